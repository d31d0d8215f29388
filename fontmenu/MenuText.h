// A font menu for people to read and for programs.
#pragma once

#include "fontmenu/FontMenu.h"
#include "platform/PlatformTypes.h"

#include <functional>
#include <string>
#include <string_view>

namespace fontmenu {

// A line for each item, two blanks further in for each submenu around it. Names, which are other people's, are written
// as the function shows them. After the title, where they apply: "▸" it is a submenu, "Aa" it is drawn in its own face,
// "+Aa" with a sample beside it, "14 pt", "[TrueType]" its icon, "×2" it stands for so many copies, "○" it is not
// active; before it "✓" it is, or leads to, the font in use. A title of a part of the list stands between two dashes.
std::string menuText(const Menu& menu, const std::function<std::string(std::string_view)>& shown);

// Every field of it, and of the faces those that tell which one it is.
platform::PropertyList menuValue(const Menu& menu, std::span<const platform::FontFace> faces);

}  // namespace fontmenu
