// The order of names in a menu.
#pragma once

#include <string>
#include <string_view>

namespace fontmenu {

// Names compare as their keys do, byte by byte: letters whatever their case and the accents of Western Europe, numbers
// by what they are worth. Names that differ may have the same key.
std::string orderKey(std::string_view name);

}  // namespace fontmenu
