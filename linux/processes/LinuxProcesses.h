// Processes on Linux, and the applications that they run.
#pragma once

#include "linux/applications/LinuxApplications.h"
#include "linux/processes/SessionLeader.h"
#include "platform/Processes.h"

namespace linux {

struct WindowOwner {
    platform::ProcessID process = 0;  // as its window tells it, in a sandbox by another count; 0: not told
    std::string windowClass;          // WM_CLASS; empty: not told
};

// A process's bundle is the .app or .plinth folder around its program, else the desktop entry that starts the program.
// The session's leader has the identifier of the login window. A serial number is made of the start time and the id.
class LinuxProcesses final : public platform::ProcessServices {
public:
    // The applications outlive this object. The session's leader is asked for once.
    explicit LinuxProcesses(LinuxApplications& applications) : applications_(applications) {}

    std::vector<platform::ProcessID> runningProcesses() override;
    platform::ProcessID currentProcess() override;
    std::optional<platform::ProcessSerialNumber> serialNumber(platform::ProcessID process) override;
    std::optional<std::string> bundleFolder(platform::ProcessID process) override;
    std::optional<std::string> bundlePath(platform::ProcessID process) override;
    std::optional<std::string> bundleIdentifier(platform::ProcessID process) override;
    std::optional<platform::Date> launchDate(platform::ProcessID process) override;
    bool postQuitRequest(const platform::ProcessSerialNumber& process, std::string_view bundleIdentifier) override;
    // The applications that run for this user, but for this process's own: those that menus show, and of others those
    // that have one of the windows. In the order of their paths.
    std::vector<ApplicationRecord> runningApplications(const std::vector<WindowOwner>& windows);

private:
    std::vector<ApplicationRecord> applicationsOf(platform::ProcessID process);
    std::optional<std::string> program(platform::ProcessID process) const;
    bool isOfThisUser(platform::ProcessID process) const;

    LinuxApplications& applications_;
    std::optional<std::optional<platform::ProcessID>> leader_;
};

// The innermost folder with the extension .app or .plinth around a program; nothing when there is none.
std::optional<std::string> bundleAround(std::string_view program);

}  // namespace linux
