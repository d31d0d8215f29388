// Processes on Linux, and the applications that they run.
#pragma once

#include "platform/Processes.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/SessionLeader.h"

namespace platform::posix {

// A process's bundle is the .app or .plinth folder around its program, else the desktop entry that starts the program.
// The session's leader has the identifier of the login window. A serial number is made of the start time and the id.
class LinuxProcesses final : public ProcessServices {
public:
    // The applications outlive this object.
    explicit LinuxProcesses(LinuxApplications& applications, SessionSources sources = {})
        : applications_(applications), sources_(std::move(sources)) {}

    std::vector<ProcessID> runningProcesses() override;
    ProcessID currentProcess() override;
    std::optional<ProcessSerialNumber> serialNumber(ProcessID process) override;
    std::optional<std::string> bundleFolder(ProcessID process) override;
    std::optional<std::string> bundlePath(ProcessID process) override;
    std::optional<std::string> bundleIdentifier(ProcessID process) override;
    std::optional<Date> launchDate(ProcessID process) override;
    bool postQuitRequest(const ProcessSerialNumber& process, std::string_view bundleIdentifier) override;

private:
    std::optional<std::string> program(ProcessID process) const;
    bool isOfThisUser(ProcessID process) const;
    bool isSessionLeader(ProcessID process);

    LinuxApplications& applications_;
    const SessionSources sources_;
};

// The innermost folder with the extension .app or .plinth around a program; nothing when there is none.
std::optional<std::string> bundleAround(std::string_view program);

}  // namespace platform::posix
