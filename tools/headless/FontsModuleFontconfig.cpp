// The module that typeslatectl loads to list fonts.
#include "linux/fonts/LinuxFonts.h"
#include "tools/headless/FontsModule.h"

extern "C" __attribute__((visibility("default"))) platform::FontServices* typeslatectl_fontServices() {
    static linux::LinuxFonts sFonts;
    return &sFonts;
}
