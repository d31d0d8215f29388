// A stored domain, and notice of each change of it.
#pragma once

#include "linux/preferences/DiskPreferences.h"

#include <set>
#include <string>
#include <string_view>

struct inotify_event;

namespace linux {

// Sees changes through inotify(7) on the preferences folder, and on the folder of the file itself where a link leads
// elsewhere. The session bus would not do: other programs store settings without a word. A link that is turned while it
// lies in a third folder, on the way, goes unnoticed until the next change.
class DomainWatch {
public:
    // Makes the preferences folder where it is missing and reads the domain. The service outlives the watch.
    DomainWatch(DiskPreferences& preferences, std::string domain);

    // Readable, for poll(2), when something has happened in a watched folder. Not valid when nothing can be watched.
    const Descriptor& events() const { return events_; }
    // Reads all events that are there, without waiting, and takes the domain in where an event may be about it. Gone:
    // the preferences folder is removed, moved or unmounted. Changed: the values are other than at the last time.
    enum class Outcome { Same, Changed, Gone };
    Outcome takeIn();
    // As they were taken in last; a dictionary.
    const platform::PropertyList& values() const { return values_; }

private:
    void watchFolders();
    bool isAbout(const ::inotify_event& event, bool& isGone) const;
    bool readValues();

    DiskPreferences& preferences_;
    const std::string domain_;
    Descriptor events_;
    int folderWatch_ = -1, parentWatch_ = -1;
    std::set<std::string, std::less<>> names_;  // of the file, by whatever link
    platform::PropertyList values_;
};

}  // namespace linux
