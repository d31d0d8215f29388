// The process that began the user's session.
#pragma once

#include "platform/Processes.h"

#include <optional>
#include <string>

namespace linux {

struct SessionSources {
    std::string processes = "/proc";
    std::string sessions = "/run/systemd";  // what the login manager publishes
};

// Nothing where there is no such process: no login manager, a container, a service. docs/updates.md has the order in
// which it is looked for.
std::optional<platform::ProcessID> sessionLeader(const SessionSources& sources, platform::ProcessID self,
                                                 std::uint32_t user);

}  // namespace linux
