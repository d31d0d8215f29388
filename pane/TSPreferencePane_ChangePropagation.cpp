// Telling running applications that the settings changed: at once by a notification, and by a broadcast through the
// injection runtime when two seconds have passed without another change.
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

bool TSPreferencePane::commit(std::vector<PropertyList> list, const std::function<void()>& showAnew) {
    bool isSaved = storeEntryList(std::move(list));
    if (showAnew) showAnew();
    queueForFiring();
    postPrefsChanged();
    return isSaved;
}

bool TSPreferencePane::storeEntryList(std::vector<PropertyList> list) {
    // A list made without knowing the stored one must never replace it.
    if (!prefs->isReadable()) {
        platform_.log("The settings cannot be read; the change is not stored.");
        return false;
    }
    prefs->setObject_forKey(PropertyList::array(std::move(list)), kEntryListKey);
    return prefs->synchronize();
}

void TSPreferencePane::postPrefsChanged() { platform_.notifications.post(kSettingsDomain, "PrefsChanged", {}, true); }
