// The words of a font menu that are not the fonts' own.
#pragma once

#include "fontmenu/WritingGroup.h"
#include "platform/Fonts.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace fontmenu {

struct MenuWords {
    std::string allFonts;                     // the submenu with all fonts
    std::array<std::string, kGroups> groups;  // the names of writing systems and what stands beside them
};

// With each English word as the function gives it in another language.
using Translation = std::function<std::string(std::string_view english)>;
MenuWords menuWords(const Translation& translated);

// The name of a format, the same in every language; empty for Unknown.
std::string_view nameOf(platform::FontKind kind);

}  // namespace fontmenu
