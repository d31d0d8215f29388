#include "tools/headless/FontsModule.h"

#include "tools/Localized.h"
#include "tools/headless/InstalledModule.h"

namespace tools {

platform::FontServices& requireFonts() {
    static constexpr InstalledModule kModule{"typeslatectl-fonts.so", kFontsModuleFactoryName};
    auto factory = kModule.factory<FontsModuleFactory>();
    if (!factory) throw refused("the part for fonts is not installed (%@)", kModule.path());
    return *factory();
}

}  // namespace tools
