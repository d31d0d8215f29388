// A program's own texts in the user's language.
#pragma once

#include "platform/Log.h"

#include <string>
#include <string_view>

namespace linux {

// The English text in the user's language, as far as the pane's bundle has it: its localised strings hold the texts of
// the programs too.
std::string localized(std::string_view english);

// The same as a format ("%@"), with its arguments put in.
template <typename... Arguments>
std::string localizedFormat(std::string_view english, const Arguments&... arguments) {
    return platform::formatted(localized(english), {platform::FormatArgument(arguments)...});
}

}  // namespace linux
