// One helper for each user: whoever holds the lock is the one.
#pragma once

#include "linux/files/FileAccess.h"

namespace helper {

// Never waits. Held until the descriptor goes, with the process at the latest. Not valid, and error() is EWOULDBLOCK,
// while another process holds it; any other error tells why the lock file cannot be opened.
linux::Descriptor takeHelperLock();

}  // namespace helper
