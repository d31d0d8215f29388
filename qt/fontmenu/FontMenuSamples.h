// What shows the letters of a font that cannot write its own name.
#pragma once

#include "platform/Fonts.h"

#include <string>

namespace qt {

// A few letters of the first writing system that the font covers, beside Latin where it can; empty for a font of
// pictures and for one whose system is not known: then its first characters tell most.
std::string sampleFor(const platform::FontFace& face);

}  // namespace qt
