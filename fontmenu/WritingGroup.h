// Where a menu that is sorted by writing system puts a font.
#pragma once

#include "platform/Fonts.h"

#include <cstddef>

namespace fontmenu {

// The number of a writing system, or one of those behind them: for several of Chinese, Japanese and Korean; for none
// that is known; without letters. The last two are no systems.
inline constexpr std::size_t kEastAsianGroup = platform::kWritingSystems, kOtherGroup = kEastAsianGroup + 1,
                             kSymbolGroup = kOtherGroup + 1;
inline constexpr std::size_t kGroups = kSymbolGroup + 1;

// What the font is made for, as far as what it covers tells: the one system that it covers beside Latin, Greek and
// Cyrillic, else the first of these three that it covers, else the first of all.
std::size_t writingGroup(const platform::FontFace& face);

}  // namespace fontmenu
