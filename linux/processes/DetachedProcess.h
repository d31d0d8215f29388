// Starting programs that outlive this process and are never its children.
#pragma once

#include "platform/PlatformTypes.h"

#include <string>
#include <vector>

namespace linux {

// Runs the program words[0], looked up on PATH when it has no slash, with the words as its arguments, in a session of
// its own, with /dev/null for its three standard streams (whoever reads this process's would wait for its end) and no
// other descriptor of this process. No shell is involved. kFileNotFound or kPermissionErr when it cannot be executed,
// kIOErr when no process can be made; kParamErr without words.
platform::OSStatus startDetached(const std::vector<std::string>& words);

}  // namespace linux
