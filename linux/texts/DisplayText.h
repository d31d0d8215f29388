// Foreign text (names from files, file names) made safe to show.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace linux {

inline constexpr std::size_t kMaximumDisplayCharacters = 256;

// One line that shows what it says: control characters and line separators become blanks, runs of blanks one blank,
// characters that change the direction of the text around them are dropped, bytes that are not UTF-8 become U+FFFD.
// Cut off with an ellipsis after kMaximumDisplayCharacters; blanks at either end are dropped.
std::string displayText(std::string_view text);

}  // namespace linux
