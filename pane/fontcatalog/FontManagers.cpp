#include "pane/fontcatalog/FontManagers.h"

#include <array>

using namespace platform;

namespace {

struct FontManager {
    FourCharCode creator;
    const char* identifier;
    const char* name;
};

enum Index { kFontAgentPro, kFontExplorer, kSuitcase, kCount };

constexpr std::array<FontManager, kCount> kManagers{{
    {fourCharCode("FApM"), "com.insidersoftware.fontagentpro.fontmanager", "FontAgent Pro.app"},
    {fourCharCode("LFEX"), "com.linotype.FontExplorerX", "Linotype FontExplorer X.app"},
    {fourCharCode("SUIT"), "com.extensis.SuitcaseFusion", "Suitcase Fusion.app"},
}};

std::array<std::optional<bool>, kCount> sAnswers;

bool isInstalled(Index index, ApplicationServices& applications) {
    std::optional<bool>& answer = sAnswers[index];
    const FontManager& manager = kManagers[index];
    if (!answer) answer = applications.findApplication({manager.creator, manager.identifier, manager.name}).has_value();
    return *answer;
}

}  // namespace

bool IsFAPInstalled(ApplicationServices& applications) { return isInstalled(kFontAgentPro, applications); }
bool IsFEXInstalled(ApplicationServices& applications) { return isInstalled(kFontExplorer, applications); }
bool IsSuitcaseInstalled(ApplicationServices& applications) { return isInstalled(kSuitcase, applications); }

void forgetInstalledFontManagers() { sAnswers.fill(std::nullopt); }
