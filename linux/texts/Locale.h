// The locale that the environment asks for.
#pragma once

#include <string_view>

namespace linux {

// The value of the first of LC_ALL, the category's own variable ("LC_MESSAGES", "LC_TIME") and LANG that is set and not
// empty, as it stands: "de_AT.UTF-8"; empty when none is. Good until the environment changes.
std::string_view localeOf(const char* category);

}  // namespace linux
