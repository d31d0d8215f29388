// The stored settings, and notice of each change.
#pragma once

#include "linux/LinuxMachine.h"

#include <set>
#include <string>
#include <string_view>

namespace helper {

// Sees changes through inotify on the preferences folder, and on the folder of the file itself where a link leads
// elsewhere. The bus would not do: other programs store settings without a word.
class SettingsWatch {
public:
    // The store outlives the watch.
    explicit SettingsWatch(linux::LinuxStore& store);

    // Readable when something has happened in a watched folder. Not valid when nothing can be watched.
    const linux::Descriptor& events() const { return events_; }
    // Reads the events and what they announce. False when the preferences folder is gone.
    bool takeIn();

private:
    void watchFolders();
    void readSettings();

    linux::LinuxStore& store_;
    linux::Descriptor events_;
    int folderWatch_ = -1;
    std::set<std::string, std::less<>> names_;  // of the file, by whatever link
    platform::PropertyList known_;
};

}  // namespace helper
