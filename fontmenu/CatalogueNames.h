// The names that the stored catalogue has for fonts (docs/font-catalogue.md).
#pragma once

#include "platform/Fonts.h"
#include "platform/PlatformTypes.h"

#include <span>

namespace fontmenu {

// Gives the faces that the catalogue knows by their PostScript names the family, style and full name that it has for
// them. Sets go on naming them by what they are listed as.
void takeCatalogueNames(std::span<platform::FontFace> faces, const platform::PropertyList& allNames);

}  // namespace fontmenu
