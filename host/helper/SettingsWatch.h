// The stored settings, and notice of each change.
#pragma once

#include "linux/preferences/DiskPreferences.h"

#include <set>
#include <string>
#include <string_view>

namespace helper {

// Sees changes through inotify(7) on the preferences folder, and on the folder of the file itself where a link leads
// elsewhere. The session bus would not do: other programs store settings without a word. A link that is turned while it
// lies in a third folder, on the way, goes unnoticed until the next change.
class SettingsWatch {
public:
    // Makes the preferences folder where it is missing and reads the settings. Both outlive the watch.
    SettingsWatch(linux::DiskPreferences& preferences, platform::Log& log);

    // Readable, for poll(2), when something has happened in a watched folder. Not valid when nothing can be watched.
    const linux::Descriptor& events() const { return events_; }
    // Reads all events that are there, without waiting, and the settings where an event may be about them. Settings
    // that are other than before are logged when their "Log Stuff" is on. False when the preferences folder is gone:
    // removed, moved or unmounted.
    bool takeIn();

private:
    void watchFolders();
    void readSettings();

    linux::DiskPreferences& preferences_;
    platform::Log& log_;
    linux::Descriptor events_;
    int folderWatch_ = -1, parentWatch_ = -1;
    std::set<std::string, std::less<>> names_;  // of the file, by whatever link
    platform::PropertyList known_;
};

}  // namespace helper
