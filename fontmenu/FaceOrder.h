// Which faces a menu shows, and in which order: what holds wherever in the menu they stand.
#pragma once

#include "fontmenu/MenuOptions.h"
#include "platform/Fonts.h"

#include <cstdint>
#include <span>
#include <vector>

namespace fontmenu {

using FaceNumber = std::uint32_t;  // its place in the list of faces

struct FaceOrder {
    std::vector<FaceNumber> faces;    // families by name, in each the normal width first, then by weight, then upright
    std::vector<std::uint32_t> rank;  // of each face, its place among those; kNotListed for what is there twice
    std::vector<std::uint32_t> familyOf;  // of each face; families are numbered in their order
    std::size_t families = 0;             // that have an active face
};
inline constexpr std::uint32_t kNotListed = ~std::uint32_t{0};

// The order is the same whatever the order of `faces`. A face that is listed twice (a file by the same path, the normal
// style of a variable font beside the one without a name) counts once.
FaceOrder faceOrder(std::span<const platform::FontFace> faces);

struct FaceCopies {
    std::vector<FaceNumber> shownFor;  // for each listed face the one that stands for it, mostly itself
    std::vector<std::uint32_t> count;  // for each shown face how many it stands for, itself among them
};

// Faces are copies of one font when they have the same PostScript name, or without one the same family and style. Of
// copies the active, then the newest, then the one in the most capable format stands for all, then the first.
FaceCopies faceCopies(std::span<const platform::FontFace> faces, const FaceOrder& order, Copies handling);

}  // namespace fontmenu
