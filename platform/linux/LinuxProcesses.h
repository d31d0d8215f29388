// Processes on Linux, and the applications that they run.
#pragma once

#include "platform/Processes.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/SessionLeader.h"

namespace platform::posix {

// A process's bundle is the .app or .plinth folder around its program, else the desktop entry that starts the program.
// The session's leader has the identifier of the login window.
class LinuxProcesses final : public ProcessServices {
public:
    // The applications outlive this object.
    explicit LinuxProcesses(LinuxApplications& applications, SessionSources sources = {})
        : applications_(applications), sources_(std::move(sources)) {}

    std::vector<ProcessID> runningProcesses() override;
    ProcessID currentProcess() override;
    std::optional<std::string> bundlePath(ProcessID process) override;
    std::optional<std::string> bundleIdentifier(ProcessID process) override;
    std::optional<Date> launchDate(ProcessID process) override;

private:
    std::optional<std::string> program(ProcessID process) const;
    bool isSessionLeader(ProcessID process);

    LinuxApplications& applications_;
    const SessionSources sources_;
};

// The innermost folder with the extension .app or .plinth around a program; nothing when there is none.
std::optional<std::string> bundleAround(std::string_view program);

}  // namespace platform::posix
