// A short text that tells one state of the entry list from another, for those who read it, think, and then write.
#pragma once

#include "platform/PlatformTypes.h"

#include <span>
#include <string>

namespace entrylist {

// Sixteen hexadecimal digits, the same for equal lists in every process and version. Two lists that differ have the
// same one by chance only, which is no protection against somebody who looks for such a pair.
std::string tokenOf(std::span<const platform::PropertyList> list);

}  // namespace entrylist
