// The commands' texts in the user's language.
#pragma once

#include "platform/linux/Localized.h"
#include "tools/Refusal.h"

#include <string_view>

namespace tools {

using platform::posix::localized;
using platform::posix::localizedFormat;

// A refusal in the user's language.
template <typename... Arguments>
Refusal refused(std::string_view english, const Arguments&... arguments) {
    return Refusal(localizedFormat(english, arguments...));
}

}  // namespace tools
