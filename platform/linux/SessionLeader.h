// The process that began the user's session.
#pragma once

#include "platform/Processes.h"

#include <optional>
#include <string>

namespace platform::posix {

struct SessionSources {
    std::string processes = "/proc";
    std::string sessions = "/run/systemd";  // what the login manager publishes
};

// Nothing where there is no such process: no login manager, a container, a service. docs/updates.md has the order in
// which it is looked for.
std::optional<ProcessID> sessionLeader(const SessionSources& sources, ProcessID self, std::uint32_t user);

}  // namespace platform::posix
