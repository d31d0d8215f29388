#include "linux/fonts/LinuxFonts.h"

extern "C" __attribute__((visibility("default"))) platform::FontServices* typeslate_fontServices() {
    static linux::LinuxFonts sFonts;
    return &sFonts;
}
