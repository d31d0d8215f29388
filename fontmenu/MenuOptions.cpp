#include "fontmenu/MenuOptions.h"

#include "settings/SettingsSchema.h"

namespace fontmenu {
namespace {

struct Switch {
    const char* key;
    bool MenuOptions::*option;
};

constexpr Switch kSwitches[] = {
    {"Enabled", &MenuOptions::isEnabled},
    {"CheckMenuItems", &MenuOptions::marksCurrent},
    {"ShowFontInFace", &MenuOptions::drawsInFace},
    {"ShowSets", &MenuOptions::hasSets},
    {"ShowIcons", &MenuOptions::hasIcons},
    {"HierarchicalMenu", &MenuOptions::nestsFamilies},
    {"AllFontsGroup", &MenuOptions::hasAllFonts},
    {"ScriptSort", &MenuOptions::sortsByWritingSystem},
    {"IncludeFAPSets", &MenuOptions::hasFontAgentSets},
    {"IncludeFEXSets", &MenuOptions::hasFontExplorerSets},
    {"IncludeSuitcaseSets", &MenuOptions::hasSuitcaseSets},
    {"GenerateInactivePreview", &MenuOptions::drawsInactiveInFace},
    {"ModifyFontPanel", &MenuOptions::arrangesFontPanel},
};

}  // namespace

MenuOptions menuOptions(const platform::PropertyList& settings) {
    auto value = [&](const char* key) { return settings::appliedValue(settings, *settings::optionForKey(key)); };
    MenuOptions options;
    for (const Switch& each : kSwitches) options.*each.option = value(each.key) != 0;
    options.copies = static_cast<Copies>(value("DupeHandling"));
    if (value(settings::kChangeSizeKey.data()) != 0) options.size = value("FontSize");
    return options;
}

}  // namespace fontmenu
