// The platform status for an errno of the system.
#pragma once

#include "platform/PlatformTypes.h"

namespace linux {

// kNoErr for 0, kIOErr for what has no status of its own.
platform::OSStatus statusOfErrno(int error);

}  // namespace linux
