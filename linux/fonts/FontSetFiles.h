// The files in which font managers keep their sets. Whatever the bytes, the result is sets with names and families that
// are fit to be shown, at most kMostSets of them with at most kMostMembers families altogether, nested no deeper than
// kDeepestSets; the rest is left out. What is no such file has no sets.
#pragma once

#include "platform/Fonts.h"

#include <string_view>
#include <vector>

namespace linux {

inline constexpr std::size_t kMostSets = 1000, kMostMembers = 100'000, kDeepestSets = 8;

// The collections of Font Manager (github.com/FontManager), "Collections.json": an array of objects with "name",
// "families" and "children", or, up to version 0.8, such objects by name in "entries", ordered by their "index".
std::vector<platform::FontSet> fontManagerCollections(std::string_view json);

// The groups of KDE's font management, "fontgroups.xml": <groups><group name="…"><family>…</family>…</group>…</groups>.
std::vector<platform::FontSet> kdeFontGroups(std::string_view xml);

}  // namespace linux
