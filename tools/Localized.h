// The commands' texts in the user's language.
#pragma once

#include "linux/texts/Localized.h"
#include "tools/Refusal.h"

#include <string_view>

namespace tools {

using linux::localized;
using linux::localizedFormat;

// A refusal in the user's language.
template <typename... Arguments>
Refusal refused(std::string_view english, const Arguments&... arguments) {
    return Refusal(localizedFormat(english, arguments...));
}

}  // namespace tools
