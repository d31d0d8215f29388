// The table of entries: its rows are the elements of "TheExcList", read afresh for every question.
#include "pane/TSPreferencePane.h"

#include "settings/EntryList.h"

#include <algorithm>
#include <charconv>
#include <cstring>

using namespace platform;
using namespace settings;

namespace {

constexpr int kIconColumnNumber = 13;

int columnNumber(std::string_view identifier) {
    int number = 0;
    std::from_chars(identifier.data(), identifier.data() + identifier.size(), number);
    return number;
}

std::optional<std::string> textUnder(const PropertyList& entry, std::string_view key) {
    const PropertyList& value = entry[key];
    if (!value.isString()) return std::nullopt;
    return std::string(value.stringValue());
}

// A creator's text holds the code's bytes as they lie in memory.
FourCharCode creatorCode(std::string_view text) {
    FourCharCode code = 0;
    std::memcpy(&code, text.data(), std::min(text.size(), sizeof code));
    return code;
}

std::pair<std::string, std::string> baseNameAndExtension(std::string_view file) {
    std::size_t dot = file.rfind('.');
    if (dot == std::string_view::npos) return {std::string(file), ""};
    return {std::string(file.substr(0, dot)), std::string(file.substr(dot + 1))};
}

}  // namespace

int TSPreferencePane::numberOfRowsInTableView(TableView& table) {
    getCVAliasClass();
    makeSureGlobalIsFirst();
    return exTableView.is(&table) ? static_cast<int>(entryList().size()) : 0;
}

std::optional<std::string> TSPreferencePane::foundApplication(const PropertyList& entry) {
    ApplicationQuery query;
    if (hasType(entry, kIdentifierType))
        query.identifier = entry[kDataKey].stringValue();
    else if (hasType(entry, kCreatorType))
        query.creator = creatorCode(entry[kDataKey].stringValue());
    else
        return std::nullopt;
    return platform_.applications.findApplication(query);
}

std::optional<std::string> TSPreferencePane::pathOfEntry(const PropertyList& entry) {
    std::optional<std::string> found = foundApplication(entry);
    if (!found) return textUnder(entry, kPathKey);
    return CVAliasClass ? CVAliasClass->aliasWithPath(*found)->path() : *found;
}

std::string TSPreferencePane::nameOfEntry(const PropertyList& entry) {
    std::optional<std::string> found = foundApplication(entry);
    if (found && CVAliasClass) return CVAliasClass->aliasWithPath(*found)->displayName();
    return textUnder(entry, kNameKey).value_or("");
}

AttributedLine TSPreferencePane::secondLineOfEntry(const PropertyList& entry) {
    if (hasType(entry, kRegExType)) {
        std::string kind = regexType->itemTitle(static_cast<int>(entry[kRegExTypeKey].integerValue()));
        return {formatted("%@: %@", {kind, entry[kDataKey].stringValue()}), true};
    }
    std::optional<std::string> path = pathOfEntry(entry);
    if (path && platform_.files.fileExists(*path)) return {*path, true};
    return {hasType(entry, kGlobalType) ? localized("Global Setting") : localized("<<Not Found On Computer>>"), true};
}

std::optional<std::string> TSPreferencePane::pathForIndex(int row) { return pathOfEntry(entryAtRow(row)); }

std::string TSPreferencePane::nameForIndex(int row) { return nameOfEntry(entryAtRow(row)); }

std::vector<AttributedLine> TSPreferencePane::nameAndPathForIndex(int row) {
    PropertyList entry = entryAtRow(row);
    return {{nameOfEntry(entry)}, secondLineOfEntry(entry)};
}

ImageRef TSPreferencePane::imageResource(std::string_view file) {
    auto [name, type] = baseNameAndExtension(file.substr(file.rfind('/') + 1));
    auto path = thisBundle.resourcePath(name, type);
    return path ? platform_.toolkit.imageAtPath(*path) : nullptr;
}

ImageRef TSPreferencePane::iconOfEntry(const PropertyList& entry) {
    InterfaceToolkit& toolkit = platform_.toolkit;
    if (hasType(entry, kGlobalType)) return imageResource(thisBundle.infoValue("CFBundleIconFile").stringValue());
    if (hasType(entry, kRegExType)) return imageResource("can.icns");
    auto path = pathOfEntry(entry);
    return path && platform_.files.fileExists(*path) ? toolkit.workspaceIcon(*path) : toolkit.genericApplicationIcon();
}

CellValue TSPreferencePane::tableView_objectValueForTableColumn_row(TableView& table, std::string_view columnIdentifier,
                                                                    int row) {
    if (!exTableView.is(&table)) return {};
    if (columnNumber(columnIdentifier) == kIconColumnNumber) return {iconOfEntry(entryAtRow(row)), {}};
    return {nullptr, nameAndPathForIndex(row)};
}

void TSPreferencePane::tableViewSelectionDidChange(const InterfaceNotification& notification) {
    if (!exTableView.is(notification.object)) return;
    int row = exTableView->selectedRow();
    if (row >= 0 && row < exTableView->numberOfRows())
        selectedEntry(row);
    else
        lostSelection();
}

void TSPreferencePane::selectedEntry(int row) {
    lastSelected = row;
    PropertyList entry = entryAtRow(row);
    showRegexFields(entry);
    updateStates(entry[kSettingsKey]);
    toggleAll();
    exRemoveAppButton->setEnabled(!hasType(entry, kGlobalType));
    perAppEnabled->setEnabled(true);
    toggleAll();
}

// The selection cannot be emptied by a click into blank space: the last valid one comes back.
void TSPreferencePane::lostSelection() {
    int rows = exTableView->numberOfRows();
    if (lastSelected < 0) {
        showRegexFields({});
        exRemoveAppButton->setEnabled(false);
        updateStates({});
    } else if (rows > 0) {
        exTableView->selectRow(lastSelected < rows ? lastSelected : rows - 1);
    }
    toggleAll();
}

void TSPreferencePane::showRegexFields(const PropertyList& entry) {
    bool isRegex = hasType(entry, kRegExType);
    regexName->setStringValue(isRegex ? entry[kNameKey].stringValue() : "");
    regex->setStringValue(isRegex ? entry[kDataKey].stringValue() : "");
    if (isRegex) regexType->selectItem(static_cast<int>(entry[kRegExTypeKey].integerValue()));
}

bool TSPreferencePane::tableView_validateDrop(TableView& table) { return table.isEnabled(); }

bool TSPreferencePane::tableView_acceptDrop(TableView& table, const std::vector<std::string>& fileNames) {
    if (!table.isEnabled() || !exTableView.is(&table)) return false;
    exOpenPanelDidEnd_returnCode_contextInfo(nullptr, 1, fileNames);
    return true;
}

void TSPreferencePane::doubleClickTable(View& sender) {
    if (exTableView.is(&sender)) regexNew(sender);
}

bool TSPreferencePane::tableView_writeRows_toPasteboard(TableView&, const std::vector<int>&) { return false; }
