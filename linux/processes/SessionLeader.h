// The process that began the user's session.
#pragma once

#include "platform/Processes.h"

#include <optional>

namespace linux {

// As the login manager (org.freedesktop.login1 on the system bus) knows it: the leader of the session that this process
// is in, else of the user's graphical one. Asks anew at each call, for a second at most. Nothing where there is no such
// session or nobody to ask: no login manager, a container, a service, built without libsystemd.
std::optional<platform::ProcessID> sessionLeader();

}  // namespace linux
