// The fonts that fontconfig lists, and the sets that Linux font managers keep.
#pragma once

#include "platform/Fonts.h"

namespace linux {

// Without state: each call reads the system's configuration and caches anew, with a configuration of its own, and takes
// no part in what the rest of the process does with fontconfig. Nothing of what others have written makes it fail; what
// cannot be read is left out.
class LinuxFonts final : public platform::FontServices {
public:
    std::vector<platform::FontFace> listFaces(std::string_view language) override;
    std::vector<platform::FontSet> listSets() override;
};

}  // namespace linux
