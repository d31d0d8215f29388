// The processes of this machine, as far as this user may see them.
#pragma once

#include "platform/PropertyList.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

using ProcessID = std::int64_t;

// The identifier of the process that began the user's session.
inline constexpr std::string_view kLoginWindowIdentifier = "com.apple.loginwindow";

// A process may end at any time: each question about one that is gone is answered with nothing.
class ProcessServices {
public:
    virtual ~ProcessServices() = default;
    virtual std::vector<ProcessID> runningProcesses() = 0;  // in ascending order
    virtual ProcessID currentProcess() = 0;
    // The application or module that the process runs: the folder of its bundle, or its desktop file.
    virtual std::optional<std::string> bundlePath(ProcessID process) = 0;
    virtual std::optional<std::string> bundleIdentifier(ProcessID process) = 0;
    virtual std::optional<Date> launchDate(ProcessID process) = 0;
};

}  // namespace platform
