// The fonts of the system for typeslatectl, in a module that only the command that lists them loads: it brings four
// libraries with it.
#pragma once

#include "platform/Fonts.h"

namespace tools {

inline constexpr const char* kFontsModuleFactoryName = "typeslatectl_fontServices";
using FontsModuleFactory = platform::FontServices* (*)();  // one for the process

// Throws Refusal when the module is not installed.
platform::FontServices& requireFonts();

}  // namespace tools
