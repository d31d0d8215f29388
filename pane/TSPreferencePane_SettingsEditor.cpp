// The controls that show and change the options of the selected entry, and the two switches of the whole pane.
#include "pane/TSPreferencePane.h"

#include "pane/fontcatalog/FontManagers.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"

#include <algorithm>

using namespace platform;
using namespace settings;

namespace {

constexpr const char* kConsoleIdentifier = "com.apple.Console";

bool isInstalled(SetSource source, ApplicationServices& applications) {
    switch (source) {
        case SetSource::FontAgentPro:
            return IsFAPInstalled(applications);
        case SetSource::FontExplorerX:
            return IsFEXInstalled(applications);
        case SetSource::Suitcase:
            return IsSuitcaseInstalled(applications);
        case SetSource::None:
            return true;
    }
    return false;
}

// The entry with the change laid over its settings; without one as it is.
PropertyList withChange(const PropertyList& entry, const std::optional<OptionChange>& change) {
    MutableDictionary changedSettings(entry[kSettingsKey]), changed(entry);
    if (change) changedSettings.set(change->option->key, change->value);
    changed.set(kSettingsKey, std::move(changedSettings).freeze());
    return std::move(changed).freeze();
}

void showValue(View& control, std::int64_t value) {
    if (Button* box = control.asButton()) box->setState(value != 0);
    if (TextField* field = control.asTextField()) field->setIntegerValue(value);
    if (PopUpButton* menu = control.asPopUpButton()) menu->selectItem(menuItem(value));
}

}  // namespace

// By the states and enabled states that the controls have at the moment.
bool TSPreferencePane::showsSetsInOwnFaces() {
    auto isInUse = [this](const Option& option) {
        View& box = optionControl(option);
        return option.setSource != SetSource::None && box.integerValue() != 0 && box.isEnabled();
    };
    return perAppShowFace->state() && std::ranges::any_of(options(), isInUse);
}

void TSPreferencePane::updateStates(const PropertyList& settings) {
    bool isShown = settings.isDictionary();
    for (const Option& option : options()) {
        // Without a selection the menu keeps what it shows; it has no item for "none".
        if (!isShown && option.type == OptionType::Choice) continue;
        std::int64_t value = isShown ? shownValue(settings, option) : 0;
        bool isOffered = isInstalled(option.setSource, platform_.applications) &&
                         (option.enabledWhile != EnabledWhile::SetsInOwnFaces || showsSetsInOwnFaces());
        View& control = optionControl(option);
        if (keepsTypedNumber && control.asTextField() && control.asTextField()->isBeingEdited()) continue;
        showValue(control, isOffered ? value : 0);
    }
}

bool TSPreferencePane::isUsable(const Option& option) {
    switch (option.enabledWhile) {
        case EnabledWhile::MasterOn:
            return true;
        case EnabledWhile::EntryEnabled:
            return perAppEnabled->state() && isInstalled(option.setSource, platform_.applications);
        case EnabledWhile::SizeChanges:
            return perAppShowSize->state();
        case EnabledWhile::SetsInOwnFaces:
            return showsSetsInOwnFaces();
    }
    return false;
}

void TSPreferencePane::toggleAll() {
    bool isOn = enabledCheckbox->state();
    logStuff->setEnabled(isOn);
    for (const Option& option : options()) optionControl(option).setEnabled(isOn && isUsable(option));
}

void TSPreferencePane::togglePerAppPrefs(View& sender) {
    if (exTableView->selectedRow() < 0 || !shownEntry.entry().isDictionary()) return;
    ControlValues values{sender.integerValue() != 0, sender.integerValue(), sender.selectedRow()};
    auto change = optionChangeForTag(sender.tag(), values);
    if (!change) platform_.log("%@ is not handled", sender.title());
    std::optional<std::size_t> row = shownEntry.find(entryList().elements());
    if (change && row) showDependents(*change->option, withChange(entryList()[*row], change)[kSettingsKey]);
    auto layOver = [change](List& list, std::size_t at) { list[at] = withChange(list[at], change); };
    commitEntry(shownEntry, layOver, [](std::size_t) {});
}

void TSPreferencePane::showDependents(const Option& changed, const PropertyList& newSettings) {
    if (changed.key == kChangeSizeKey) perAppFontSize->setEnabled(shownValue(newSettings, changed) != 0);
    if (!changed.refreshesOthers) return;
    updateStates(newSettings);
    toggleAll();
}

void TSPreferencePane::toggleEnabled(View&) {
    bool newDisabled = !enabledCheckbox->state();
    announce(0, save());
    showStoredList();
    if (prefs->boolForKey(kDisabledKey) == newDisabled) return;
    prefs->setBool_forKey(newDisabled, kDisabledKey);
    announce(kBroadcastDisabled | kPost, save());
    showModuleOn(!newDisabled);
}

void TSPreferencePane::showModuleOn(bool isOn) {
    enabledCheckbox->setState(isOn);
    tabs->setControlTint(isOn ? ControlTint::Default : ControlTint::Clear);
    tabs->setNeedsDisplay();
    toggleAll();
    menuPreview.show();
}

// The path as a person reads it: each component under its display name.
std::string TSPreferencePane::displayPath(std::string path) {
    std::string text;
    while (path.starts_with('/') && path != "/") {
        text = formatted("/%@%@", {platform_.applications.displayName(path), text});
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
    announce(kBroadcastSoon, save());
}

void TSPreferencePane::changeSettings(View& sender) { exTableView->selectRow(sender.tag()); }

PropertyList TSPreferencePane::fontSettingsForRow(int row) { return entryAtRow(row)[kSettingsKey]["Font Settings"]; }

// The place for a test that refuses applications; so far it opens the bundle and refuses none.
bool TSPreferencePane::isCocoaApp(std::string_view path) {
    platform_.bundles.openBundle(path);
    return false;
}

void TSPreferencePane::displayDialog_forError_andTitle(std::string_view message, OSStatus error,
                                                       std::string_view title) {
    std::string text = CVAliasClass ? CVAliasClass->_getErrorText_text(error, message) : std::string(message);
    platform_.toolkit.runAlert(title, text);
}
