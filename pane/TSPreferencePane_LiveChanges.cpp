// Showing what other programs change while the pane is open, and what a synchronize of our own took in from them.
#include "pane/TSPreferencePane.h"

#include "settings/EntryList.h"

using namespace platform;
using namespace settings;

namespace {

// Seconds from the first announcement to the look at the store: a burst of them costs one look.
constexpr double kCoalescing = 0.05;

}  // namespace

void TSPreferencePane::observeChanges() {
    changeObservation = platform_.notifications.addObserver(kSettingsDomain, kPrefsChanged, Delivery::Latest,
                                                            [this](const Notification&) { takeInChangesSoon(); });
    storeObservation = platform_.preferences.observe([this](const PreferenceReport& report) {
        if (report.domain != kSettingsDomain || report.kind != PreferenceReport::Kind::Synchronized || isSaving) return;
        announceDue();
        if (entryList() != listShown) takeInChangesSoon();
    });
}

void TSPreferencePane::takeInChangesSoon() {
    if (takeInTimer) return;
    takeInTimer = platform_.runLoop.scheduleTimer(kCoalescing, false, [this] {
        takeInTimer.reset();
        takeInChanges();
    });
}

void TSPreferencePane::takeInChanges() {
    announce(0, save());
    showStoredList();
    showStoredSwitches();
}

void TSPreferencePane::showStoredList() {
    if (entryList() == listShown) return;
    exTableView->reloadData();
    exTableView->numberOfRows();
    std::optional<std::size_t> row = shownEntry.find(entryList().elements());
    keepsTypedNumber = row.has_value();
    if (row) exTableView->selectRow(static_cast<int>(*row));
    tableViewSelectionDidChange({kTableViewSelectionDidChange, &*exTableView});
    keepsTypedNumber = false;
}

void TSPreferencePane::showStoredSwitches() {
    // The switch shows what the warning sheet asks about.
    if (!justShowedSheet) logStuff->setState(isLogging());
    if (enabledCheckbox->state() == isModuleOn()) return;
    showModuleOn(isModuleOn());
}
