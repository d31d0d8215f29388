// What the tools for the list, which have files of their own, need of the pane: and what they add to the table.
#include "pane/TSPreferencePane.h"

#include "entrylist/Differences.h"
#include "settings/EntryList.h"

using namespace platform;
using namespace settings;

bool TSPreferencePane::changeEntries(std::function<void(List&)> change, const PropertyList& toShow) {
    if (!prefs->isReadable()) return false;
    commit(std::move(change), [&] {
        exTableView->reloadData();
        const EntryIdentity target(toShow, static_cast<std::size_t>(std::max(exTableView->selectedRow(), 0)));
        if (auto row = target.find(entryList().elements())) exTableView->selectRow(static_cast<int>(*row));
        tableViewSelectionDidChange({kTableViewSelectionDidChange, &*exTableView});
        exTableView->scrollRowToVisible(exTableView->selectedRow());
    });
    return true;
}

void TSPreferencePane::addLike(const PropertyList& entry) {
    settingsOfNew = entry[kSettingsKey];
    if (!hasType(entry, kRegExType)) return doExAddApp(*exTableView);
    // The sheet's other fields show the selected entry's.
    regexNew(*regexAdd);
    regexName->setStringValue(formatted(localized("%@ (copy)"), {entry[kNameKey].stringValue()}));
}

std::string TSPreferencePane::placeOf(const PropertyList& entry) const {
    return entryRows().find(entry).path.value_or("");
}

std::optional<std::vector<int>> TSPreferencePane::tableView_shownRows(TableView& table) {
    return exTableView.is(&table) ? listSearch.shownRows() : std::nullopt;
}

void TSPreferencePane::showAroundList() {
    listCommands.showWhatCanBeDone();
    optionMarks.show();
    menuPreview.show();
    exTableView->setNeedsDisplay();
}

bool TSPreferencePane::neverApplies(std::size_t row) { return bool(unreachable.at(entryList(), row)); }

bool TSPreferencePane::isPale(const EntryRows::Found& found, int row) {
    return shownValue(found.entry[kSettingsKey], options().front()) == 0 || found.isMissing ||
           neverApplies(static_cast<std::size_t>(row));
}

std::vector<std::string> TSPreferencePane::marksOf(const EntryRows::Found& found, int row) {
    std::vector<std::string> marks;
    const PropertyList& entry = found.entry;
    if (neverApplies(static_cast<std::size_t>(row))) marks.push_back(localized("Never applies"));
    if (!entry.isDictionary()) return marks;
    if (shownValue(entry[kSettingsKey], options().front()) == 0) marks.push_back(localized("Off"));
    if (found.isMissing) marks.push_back(localized("Not installed"));
    if (!hasType(entry, kGlobalType) && !entrylist::differs(entry, entryList()[0]))
        marks.push_back(localized("Same as Global"));
    return marks;
}
