// Items of one menu that have the same title get a detail that tells them apart.
#pragma once

#include "fontmenu/FontMenu.h"

namespace fontmenu {

// Faces by the first of these in which all of the same title differ: their format, version, maker, file's name, path;
// those of one file by their places in it. Submenus stay.
void tellApart(std::vector<MenuItem>& items, std::span<const platform::FontFace> faces);

// Submenus of sets by whose sets they are; `sets` has the set of each.
void tellSetsApart(std::vector<MenuItem>& items, std::span<const platform::FontSet* const> sets);

// "FontAgent Pro"; names of products are the same in every language.
std::string_view nameOf(platform::SetOwner owner);

}  // namespace fontmenu
