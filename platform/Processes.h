// The processes of this machine, as far as this user may see them.
#pragma once

#include "platform/PlatformTypes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

using ProcessID = std::int64_t;

// Names one process for ever, where an id is given to another process some time after its owner has ended. Both words
// are 0 for none.
struct ProcessSerialNumber {
    std::uint32_t high = 0, low = 0;
    bool operator==(const ProcessSerialNumber&) const = default;
};

// The identifier of the process that began the user's session.
inline constexpr std::string_view kLoginWindowIdentifier = "com.apple.loginwindow";

// A process may end at any time: each question about one that is gone is answered with nothing.
class ProcessServices {
public:
    virtual ~ProcessServices() = default;
    virtual std::vector<ProcessID> runningProcesses() = 0;  // in ascending order
    virtual ProcessID currentProcess() = 0;
    virtual std::optional<ProcessSerialNumber> serialNumber(ProcessID process) = 0;
    // The folder of the bundle in which the process's program lies.
    virtual std::optional<std::string> bundleFolder(ProcessID process) = 0;
    // The application or module that the process runs: the folder of its bundle, or its desktop file.
    virtual std::optional<std::string> bundlePath(ProcessID process) = 0;
    virtual std::optional<std::string> bundleIdentifier(ProcessID process) = 0;
    virtual std::optional<Date> launchDate(ProcessID process) = 0;
    // Asks a process to quit and does not wait for it. False when it could not be asked: it is gone, or its program no
    // longer belongs to a bundle of this identifier. Whoever has its id by now is left alone.
    virtual bool postQuitRequest(const ProcessSerialNumber& process, std::string_view bundleIdentifier) = 0;
};

}  // namespace platform
