// The names by which the interface file reaches the controller.
#include "pane/TSPreferencePane.h"

#include <algorithm>
#include <iterator>

using platform::View;

struct TSPreferencePane::OutletEntry {
    std::string_view name;
    void (*connect)(TSPreferencePane&, View&);
    View& (*object)(TSPreferencePane&);  // inert while not connected
};

struct TSPreferencePane::ActionEntry {
    std::string_view selector;
    void (TSPreferencePane::*action)(View& sender);
};

// clang-format off
#define OUTLET(name)                                                                     \
    {#name, [](TSPreferencePane& pane, View& object) { pane.name.connect(object); },     \
     [](TSPreferencePane& pane) -> View& { return *pane.name; }}
// clang-format on

const TSPreferencePane::OutletEntry TSPreferencePane::kOutlets[] = {
    OUTLET(enabledCheckbox),
    OUTLET(tabs),
    OUTLET(logStuff),
    OUTLET(introWarningTextBox),
    OUTLET(perAppEnabled),
    OUTLET(perAppCheckItems),
    OUTLET(perAppShowFace),
    OUTLET(perAppShowSets),
    OUTLET(perAppShowSize),
    OUTLET(perAppFontSize),
    OUTLET(perAppShowIcons),
    OUTLET(perAppDupeHandling),
    OUTLET(perAppHierarchicalMenu),
    OUTLET(perAppShowAllSet),
    OUTLET(perAppSortByScript),
    OUTLET(perAppIncludeFAPSets),
    OUTLET(perAppIncludeFEXSets),
    OUTLET(perAppIncludeSuitcaseSets),
    OUTLET(perAppGenerateInactivePreview),
    OUTLET(perAppModifyFontPanel),
    OUTLET(exRemoveAppButton),
    OUTLET(exTableView),
    OUTLET(versionField),
    OUTLET(statusField),
    OUTLET(warningSheet),
    OUTLET(warningText),
    OUTLET(warningOKButton),
    OUTLET(warningCancelButton),
    OUTLET(dontShowAgain),
    OUTLET(regexPanel),
    OUTLET(regexAdd),
    OUTLET(regexName),
    OUTLET(regex),
    OUTLET(regexType),
    OUTLET(regexText),
    OUTLET(regexSheetOK),
    OUTLET(regexCancel),
    OUTLET(regexHelp),
    OUTLET(aboutPanel),
    OUTLET(aboutTextView),
};

#undef OUTLET

const TSPreferencePane::ActionEntry TSPreferencePane::kActions[] = {
    {"togglePerAppPrefs:", &TSPreferencePane::togglePerAppPrefs},
    {"toggleEnabled:", &TSPreferencePane::toggleEnabled},
    {"toggleLogging:", &TSPreferencePane::toggleLogging},
    {"changeSettings:", &TSPreferencePane::changeSettings},
    {"warningEnd:", &TSPreferencePane::warningEnd},
    {"doubleClickTable:", &TSPreferencePane::doubleClickTable},
    {"doExAddApp:", &TSPreferencePane::doExAddApp},
    {"doExRemoveApp:", &TSPreferencePane::doExRemoveApp},
    {"regexNew:", &TSPreferencePane::regexNew},
    {"regexEnd:", &TSPreferencePane::regexEnd},
    {"editCollections:", &TSPreferencePane::editCollections},
    {"doRegExHelp:", &TSPreferencePane::doRegExHelp},
    {"doMore:", &TSPreferencePane::doMore},
    {"doAbout:", &TSPreferencePane::doAbout},
    {"ripSheet:", &TSPreferencePane::ripSheet},
};

void TSPreferencePane::setOutlet(std::string_view name, View& object) {
    auto outlet = std::ranges::find(kOutlets, name, &OutletEntry::name);
    if (outlet != std::end(kOutlets)) return outlet->connect(*this, object);
    if (!listCommands.setOutlet(name, object) && !listSearch.setOutlet(name, object) &&
        !menuPreview.setOutlet(name, object))
        expressionPreview.setOutlet(name, object);
}

View& TSPreferencePane::optionControl(const settings::Option& option) {
    return std::ranges::find(kOutlets, option.outlet, &OutletEntry::name)->object(*this);
}

void TSPreferencePane::performAction(std::string_view selector, View& sender) {
    auto entry = std::ranges::find(kActions, selector, &ActionEntry::selector);
    if (entry != std::end(kActions)) return (this->*entry->action)(sender);
    if (!listCommands.performAction(selector) && !exchangePanel.performAction(selector) &&
        !listSearch.performAction(selector) && !menuPreview.performAction(selector))
        expressionPreview.performAction(selector);
}
