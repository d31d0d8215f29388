// Saving changes, and telling running applications of what is saved: at once by a notification, and by a broadcast
// through the injection runtime when two seconds have passed without another change.
#include "pane/TSPreferencePane.h"

#include "propertylist/Date.h"
#include "settings/EntryList.h"

using namespace platform;
using namespace settings;

namespace {

constexpr double kQuietPeriod = 2.0;  // seconds

const void* addressOf(const Timer& timer) { return &timer; }

}  // namespace

void TSPreferencePane::queueForFiring() {
    RunLoop& runLoop = platform_.runLoop;
    if (!prefsTimer) {
        prefsTimer = runLoop.scheduleTimer(kQuietPeriod, false, [this] { prefsFire(); });
        if (isLogging()) platform_.log("Built %@ (0x%08X)", prefsTimer->description(), addressOf(*prefsTimer));
        return;
    }
    if (!prefsTimer->isValid()) return;
    if (isLogging()) platform_.log("Old date: %@", prefsTimer->fireDate());
    prefsTimer->setFireDate(dateByAdding(runLoop.now(), kQuietPeriod));
    if (isLogging())
        platform_.log("New date: %@ (should be %@ )", prefsTimer->fireDate(),
                      dateByAdding(runLoop.now(), kQuietPeriod));
}

void TSPreferencePane::prefsFire() {
    if (isLogging()) platform_.log("Boom!");
    if (PlinthMessageBroadcast) PlinthMessageBroadcast(kSettingsDomain.data(), "PrefChanged", nullptr);
    if (prefsTimer) prefsTimer->invalidate();
    prefsTimer.reset();
}

bool TSPreferencePane::save() {
    isSaving = true;
    bool isSaved = prefs->synchronize();
    isSaving = false;
    return isSaved;
}

bool TSPreferencePane::commit(std::function<void(List&)> change, const std::function<void()>& showAnew) {
    Edits edits = changeList(std::move(change));
    bool isSaved = edits && save();
    showAnew();
    showSelectedEntry();
    if (edits) listCommands.record(edits);
    showAroundList();
    announce(edits ? kBroadcastSoon | kPost : 0u, isSaved);
    return isSaved;
}

// What a caller took the identity from may change meanwhile.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool TSPreferencePane::commitEntry(EntryIdentity target, EntryChange change,
                                   const std::function<void(std::size_t)>& showAnew) {
    auto row = std::make_shared<std::optional<std::size_t>>();  // where it stood when the change was last made
    Edits edits = changeList([target, change = std::move(change), row](List& list) {
        *row = target.find(list);
        if (*row) change(list, **row);
    });
    if (!edits) return false;
    PropertyList expected = entryList();
    bool isSaved = save();
    if (*row) showAnew(**row);
    if (*row && entryList() == expected) listShown = expected;
    showStoredList();
    if (*row) listCommands.record(edits);
    showAroundList();
    announce(*row ? kBroadcastSoon | kPost : 0u, isSaved);
    if (!*row) platform_.host.entryWasRemoved(target.entry()[kNameKey].stringValue());
    return isSaved && *row;
}

TSPreferencePane::Edits TSPreferencePane::changeList(std::function<void(List&)> change) {
    // A list made without knowing the stored one must never replace it.
    if (!prefs->isReadable()) {
        platform_.log("The settings cannot be read; the change is not stored.");
        return nullptr;
    }
    auto edits = std::make_shared<entrylist::ListEdits>();
    prefs->changeArray_forKey(
        [change = std::move(change), edits](List& list) {
            const List before = list;
            change(list);
            *edits = entrylist::difference(before, list);
        },
        kEntryListKey);
    return edits;
}

// Whoever reads the store on hearing of a change finds it there: what is not saved yet is announced when it is.
void TSPreferencePane::announce(unsigned announcements, bool isSaved) {
    announcementsDue |= announcements;
    if (isSaved) announceDue();
}

void TSPreferencePane::announceDue() {
    unsigned due = std::exchange(announcementsDue, 0);
    if ((due & kBroadcastDisabled) && PlinthMessageBroadcast)
        PlinthMessageBroadcast(kSettingsDomain.data(), "Disabled", nullptr);
    if (due & kBroadcastSoon) queueForFiring();
    if (due & kPost) platform_.notifications.post(kSettingsDomain, kPrefsChanged, {}, true);
}
