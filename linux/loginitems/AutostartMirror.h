// Login items as the desktop's session starts them: an entry in the folder "autostart" for each item of the domain
// "loginwindow". docs/login-items.md tells what becomes of which item.
#pragma once

#include "linux/loginitems/AutostartEntry.h"
#include "linux/preferences/DiskPreferences.h"
#include "platform/Log.h"

#include <set>
#include <string>
#include <vector>

namespace linux {

// "autostart" in $XDG_CONFIG_HOME, or in ~/.config when that variable is not an absolute path.
std::string autostartFolder();

// Makes the entries follow the domain from each successful synchronize of it on. What goes wrong is logged; the stored
// items are the user's word, and are never changed here.
class AutostartMirror {
public:
    // The service and the log outlive this object, and the service is not used after it.
    AutostartMirror(DiskPreferences& preferences, platform::Log& log, FileAccess& files = FileAccess::system());
    AutostartMirror(const AutostartMirror&) = delete;

    void update();
    // Whether the last update, at least, left an entry that is not as it should be.
    bool hasFailed() const { return hasFailed_; }

private:
    struct Item {
        std::string path, value;  // as it stands, and as an entry's key has it
        bool hide;
    };
    struct OwnEntry {
        std::string name, contents;
    };

    std::vector<Item> storedItems();
    bool openFolder(bool make);
    std::vector<OwnEntry> ownEntries();
    void updateEntry(const Item& item, const OwnEntry* entry, const ApplicationEnvironment& environment);
    Failure write(std::string_view text, const Item& item, const OwnEntry* replaced);
    int moveToFreeName(const Item& item);
    void report(std::string_view what, const Failure& failure);
    bool reportFolder(const Failure& failure);
    void complain(std::string line);

    const std::string path_;
    platform::Log& log_;
    FileAccess& files_;
    DiskPreferences reader_;  // sees what other processes have stored since
    Descriptor folder_;       // during an update; its lock keeps those of other processes out
    std::set<std::string> said_;
    bool hasFailed_ = false;
};

}  // namespace linux
