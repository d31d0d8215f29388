// The controls that show and change the options of the selected entry, and the two switches of the whole pane.
#include "pane/TSPreferencePane.h"

#include "pane/fontcatalog/FontManagers.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"

using namespace platform;
using namespace settings;

namespace {

constexpr const char* kConsoleIdentifier = "com.apple.Console";
constexpr std::string_view kDontShowLogSheetKey = "Don't Show Log Stuff Sheet";
constexpr int kChangeSizeTag = 4;

}  // namespace

// A check box of the editor. A set source is shown and enabled only while its font manager is installed.
struct TSPreferencePane::OptionBox {
    std::string_view key;
    Outlet<Button> TSPreferencePane::*box;
    bool (*isInstalled)(ApplicationServices&) = nullptr;  // of a set source
    bool followsEntry = true;                             // enabled exactly while the entry is on
};

const TSPreferencePane::OptionBox TSPreferencePane::kOptionBoxes[] = {
    {"Enabled", &TSPreferencePane::perAppEnabled, nullptr, false},
    {"CheckMenuItems", &TSPreferencePane::perAppCheckItems},
    {"ShowFontInFace", &TSPreferencePane::perAppShowFace},
    {"ShowSets", &TSPreferencePane::perAppShowSets},
    {"ChangeSize", &TSPreferencePane::perAppShowSize},
    {"ShowIcons", &TSPreferencePane::perAppShowIcons},
    {"HierarchicalMenu", &TSPreferencePane::perAppHierarchicalMenu},
    {"AllFontsGroup", &TSPreferencePane::perAppShowAllSet},
    {"ScriptSort", &TSPreferencePane::perAppSortByScript},
    {"ModifyFontPanel", &TSPreferencePane::perAppModifyFontPanel},
    {"IncludeFAPSets", &TSPreferencePane::perAppIncludeFAPSets, IsFAPInstalled},
    {"IncludeFEXSets", &TSPreferencePane::perAppIncludeFEXSets, IsFEXInstalled},
    {"IncludeSuitcaseSets", &TSPreferencePane::perAppIncludeSuitcaseSets, IsSuitcaseInstalled},
    // Last, because what it shows depends on the others.
    {"GenerateInactivePreview", &TSPreferencePane::perAppGenerateInactivePreview, nullptr, false},
};

bool TSPreferencePane::isSetSourceInUse() const {
    for (const OptionBox& option : kOptionBoxes) {
        const Outlet<Button>& box = this->*option.box;
        if (option.isInstalled && box->state() && box->isEnabled()) return true;
    }
    return false;
}

void TSPreferencePane::updateStates(const PropertyList& settings) {
    bool isShown = settings.isDictionary();
    auto shown = [&](std::string_view key) { return isShown ? shownValue(settings, *optionForKey(key)) : 0; };
    for (const OptionBox& option : kOptionBoxes) {
        bool isInstalled = !option.isInstalled || option.isInstalled(platform_.applications);
        (this->*option.box)->setState(isInstalled && shown(option.key) != 0);
    }
    if (!isSetSourceInUse() || !perAppShowFace->state()) perAppGenerateInactivePreview->setState(false);
    perAppFontSize->setIntegerValue(shown("FontSize"));
    if (isShown) perAppDupeHandling->selectItem(static_cast<int>(shown("DupeHandling")));
}

void TSPreferencePane::toggleAll() {
    bool isOn = enabledCheckbox->state();
    bool isEntryOn = isOn && perAppEnabled->state();
    for (const OptionBox& option : kOptionBoxes) {
        bool isInstalled = !option.isInstalled || option.isInstalled(platform_.applications);
        if (option.followsEntry) (this->*option.box)->setEnabled(isEntryOn && isInstalled);
    }
    logStuff->setEnabled(isOn);
    perAppEnabled->setEnabled(isOn);
    perAppDupeHandling->setEnabled(isEntryOn);
    perAppFontSize->setEnabled(isOn && perAppShowSize->state());
    perAppGenerateInactivePreview->setEnabled(isOn && perAppShowFace->state() && isSetSourceInUse());
}

void TSPreferencePane::togglePerAppPrefs(View& sender) {
    int selected = exTableView->selectedRow();
    if (selected < 0) return;
    // Read first: taking in changes may fill the controls anew.
    ControlValues values{sender.integerValue() != 0, sender.integerValue(), sender.selectedRow()};
    auto fresh = freshEntryListAndRow(selected);
    if (!fresh || !fresh->list[fresh->row].isDictionary()) return;

    PropertyList& entry = fresh->list[fresh->row];
    MutableDictionary changed(entry[kSettingsKey]);
    int tag = sender.tag();
    auto change = optionChangeForTag(tag, values);
    if (change)
        changed.set(change->key, change->value);
    else
        platform_.log("%@ is not handled", sender.title());
    if (tag == kChangeSizeTag) perAppFontSize->setEnabled(values.state);

    PropertyList newSettings = std::move(changed).freeze();
    if (refreshesOtherControls(tag)) {
        updateStates(newSettings);
        toggleAll();
    }
    MutableDictionary changedEntry(entry);
    changedEntry.set(kSettingsKey, newSettings);
    entry = std::move(changedEntry).freeze();
    storeEntryList(std::move(fresh->list));
    announceChange();
}

void TSPreferencePane::toggleEnabled(View&) {
    takeInChanges();
    bool newDisabled = !enabledCheckbox->state();
    if (prefs->boolForKey(kDisabledKey) == newDisabled) return;
    prefs->setBool_forKey(newDisabled, kDisabledKey);
    enabledCheckbox->setState(!newDisabled);
    prefs->synchronize();
    if (PlinthMessageBroadcast) PlinthMessageBroadcast(kSettingsDomain.data(), "Disabled", nullptr);
    postPrefsChanged();
    tabs->setControlTint(newDisabled ? ControlTint::Clear : ControlTint::Default);
    tabs->setNeedsDisplay();
    toggleAll();
}

// The path as a person reads it: each component under its display name.
std::string TSPreferencePane::displayPath(std::string path) {
    std::string text;
    while (!path.empty() && path != "/") {
        text = "/" + platform_.applications.displayName(path) + text;
        path.erase(path.rfind('/'));
    }
    return text;
}

void TSPreferencePane::toggleLogging(View&) {
    bool isOn = logStuff->state();
    if (isOn && !justShowedSheet && !prefs->boolForKey(kDontShowLogSheetKey)) {
        auto console = platform_.applications.findApplication({std::nullopt, kConsoleIdentifier, ""});
        std::string path = console ? displayPath(*console) : "";
        if (console && isLogging()) platform_.log("%@", path);
        FormatArgument argument = console ? FormatArgument(path) : FormatArgument(nullptr);
        return showWarningSheetForString_key(formatted(localized("Log Warning"), {argument}), kLogStuffKey);
    }
    justShowedSheet = false;
    prefs->setBool_forKey(isOn, kLogStuffKey);
    prefs->synchronize();
    queueForFiring();
}

void TSPreferencePane::changeSettings(View& sender) { exTableView->selectRow(sender.tag()); }

PropertyList TSPreferencePane::fontSettingsForRow(int row) { return entryAtRow(row)[kSettingsKey]["Font Settings"]; }

// A hook that refuses nothing.
bool TSPreferencePane::isCocoaApp(std::string_view path) {
    platform_.bundles.openBundle(path);
    return false;
}

void TSPreferencePane::displayDialog_forError_andTitle(std::string_view message, OSStatus error,
                                                       std::string_view title) {
    std::string text = CVAliasClass ? CVAliasClass->_getErrorText_text(error, message) : std::string(message);
    platform_.toolkit.runAlert(title, text);
}
