// The platform status for an errno of the system.
#pragma once

#include "platform/PlatformTypes.h"

namespace platform::posix {

// kNoErr for 0, kIOErr for what has no status of its own.
OSStatus statusOfErrno(int error);

}  // namespace platform::posix
