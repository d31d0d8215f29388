// Which writing systems a font covers, by its characters.
#pragma once

#include "platform/Fonts.h"

#include <fontconfig/fontconfig.h>

namespace linux {

// A font covers a system when it has some characters that no text in it does without. Japanese, Korean and the two ways
// of writing Chinese share theirs; which of them a font is for is what fontconfig has read from it (FC_LANG).
platform::WritingSystems coverageOf(const FcCharSet& characters, const FcLangSet* languages);

// Has no letters that any system is known by, but pictures.
bool isSymbolic(const FcCharSet& characters, const platform::WritingSystems& covered);

}  // namespace linux
