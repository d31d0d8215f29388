// The table of entries: its rows are the elements of "TheExcList", read afresh for every question.
#include "pane/TSPreferencePane.h"

#include "settings/EntryList.h"

#include <charconv>

using namespace platform;
using namespace settings;

namespace {

constexpr int kIconColumnNumber = 13;

int columnNumber(std::string_view identifier) {
    int number = 0;
    std::from_chars(identifier.data(), identifier.data() + identifier.size(), number);
    return number;
}

}  // namespace

int TSPreferencePane::numberOfRowsInTableView(TableView& table) {
    getCVAliasClass();
    makeSureGlobalIsFirst();
    if (!exTableView.is(&table)) return 0;
    listShown = entryList();
    return static_cast<int>(listShown.size());
}

EntryRows TSPreferencePane::entryRows() const { return {platform_, CVAliasClass, *regexType}; }

std::optional<std::string> TSPreferencePane::pathForIndex(int row) { return entryRows().find(entryAtRow(row)).path; }

std::string TSPreferencePane::nameForIndex(int row) { return entryRows().find(entryAtRow(row)).name; }

std::vector<AttributedLine> TSPreferencePane::nameAndPathForIndex(int row) {
    return entryRows().lines(entryRows().find(entryAtRow(row)));
}

CellValue TSPreferencePane::tableView_objectValueForTableColumn_row(TableView& table, std::string_view columnIdentifier,
                                                                    int row) {
    if (!exTableView.is(&table)) return {};
    const EntryRows rows = entryRows();
    const PropertyList entry = entryAtRow(row);
    // What was found for a row's icon serves once: for its text, which is painted next.
    std::optional<EntryRows::Found> found = std::exchange(foundForIcon, std::nullopt);
    if (!found || found->entry != entry) found = rows.find(entry);
    if (columnNumber(columnIdentifier) != kIconColumnNumber) return {nullptr, rows.lines(*found), marksOf(*found, row)};
    CellValue cell{rows.icon(*found), {}, {}, isPale(*found, row)};
    foundForIcon = std::move(found);
    return cell;
}

std::vector<std::string> TSPreferencePane::tableView_detailsOfRow(TableView& table, int row) {
    if (!exTableView.is(&table) || row < 0) return {};
    const PropertyList list = entryList();
    const auto index = static_cast<std::size_t>(row);
    std::vector<std::string> details = entryRows().details(entryRows().find(list[index]));
    if (const auto& what = unreachable.at(list, index))
        details.push_back(unreachableInWords(what, list, index, [this](auto key) { return localized(key); }));
    return details;
}

void TSPreferencePane::tableViewSelectionDidChange(const InterfaceNotification& notification) {
    if (!exTableView.is(notification.object)) return;
    int row = exTableView->selectedRow();
    if (row >= 0 && row < exTableView->numberOfRows())
        showEntry(row);
    else
        restoreSelection();
}

void TSPreferencePane::showEntry(int row) {
    lastSelected = row;
    PropertyList entry = entryAtRow(row);
    shownEntry = {entry, static_cast<std::size_t>(row)};
    showRegexFields(entry);
    updateStates(entry[kSettingsKey]);
    toggleAll();
    exRemoveAppButton->setEnabled(!hasType(entry, kGlobalType));
    perAppEnabled->setEnabled(true);
    toggleAll();
    showAroundList();
}

// With what others have changed, the selected row may hold another entry than before, of which no table tells.
void TSPreferencePane::showSelectedEntry() {
    const int row = exTableView->selectedRow();
    if (row >= 0 && shownEntry.find(entryList().elements()) != static_cast<std::size_t>(row))
        tableViewSelectionDidChange({kTableViewSelectionDidChange, &*exTableView});
}

// The selection cannot be emptied by a click into blank space: the last valid one comes back.
void TSPreferencePane::restoreSelection() {
    int rows = exTableView->numberOfRows();
    if (lastSelected < 0) {
        shownEntry = {};
        showRegexFields({});
        exRemoveAppButton->setEnabled(false);
        updateStates({});
    } else if (rows > 0) {
        exTableView->selectRow(lastSelected < rows ? lastSelected : rows - 1);
    }
    toggleAll();
}

void TSPreferencePane::showRegexFields(const PropertyList& entry) {
    if (isEditingRegex) return;
    bool isRegex = hasType(entry, kRegExType);
    regexName->setStringValue(isRegex ? entry[kNameKey].stringValue() : "");
    regex->setStringValue(isRegex ? entry[kDataKey].stringValue() : "");
    if (isRegex) regexType->selectItem(menuItem(entry[kRegExTypeKey].integerValue()));
}

// What has no type counts as an expression.
bool TSPreferencePane::tableView_opensRow(TableView&, int row) {
    const PropertyList entry = entryAtRow(row);
    return row >= 0 && (!entry[kTypeKey] || hasType(entry, kRegExType));
}

bool TSPreferencePane::tableView_validateDrop(TableView& table) { return table.isEnabled(); }

bool TSPreferencePane::tableView_acceptDrop(TableView& table, const std::vector<std::string>& fileNames) {
    if (!table.isEnabled() || !exTableView.is(&table) || fileNames.empty()) return false;
    constexpr int kAsIfChosen = 1;
    exOpenPanelDidEnd_returnCode_contextInfo(nullptr, kAsIfChosen, fileNames);
    return true;
}

void TSPreferencePane::doubleClickTable(View& sender) {
    if (exTableView.is(&sender)) regexNew(sender);
}

bool TSPreferencePane::tableView_writeRows_toPasteboard(TableView&, const std::vector<int>&) { return false; }
