#include "linux/processes/SessionLeader.h"

namespace linux {

std::optional<platform::ProcessID> sessionLeader() { return {}; }

}  // namespace linux
