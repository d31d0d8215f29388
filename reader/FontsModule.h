// The part of the library that lists fonts.
#pragma once

#include "platform/Fonts.h"

namespace reader {

// Library and module are of one version and one compiler: they share types of C++.
inline constexpr const char* kFontsModule = "typeslate-fonts-" TYPESLATE_VERSION ".so";
inline constexpr const char* kFontsFactoryName = "typeslate_fontServices";
using FontsFactory = platform::FontServices* (*)();  // one for the process

}  // namespace reader
