// Login items as the desktop's session starts them: an entry in the folder "autostart" for each item of the domain
// "loginwindow". docs/login-items.md tells what becomes of which item.
#pragma once

#include "linux/loginitems/AutostartEntry.h"
#include "linux/preferences/DiskPreferences.h"
#include "platform/Log.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace linux {

// The domain in which is kept which items have had their entry: an array of dictionaries, each with the path, how many
// items there were with it, and whether they were hidden. An entry that is missing, or switched off, although its item
// is here is the user's own doing.
inline constexpr std::string_view kServedDomain = "com.tarnwick.typeslate.LoginItems";
inline constexpr std::string_view kServedItemsKey = "Served";

// "autostart" in $XDG_CONFIG_HOME, or in ~/.config when that variable is not an absolute path.
std::string autostartFolder();

// Makes the entries follow the domain from each successful synchronize of it on, and waits for other processes that do
// the same. What goes wrong is logged, each line once; the stored items are the user's word, and are never changed
// here.
class AutostartMirror {
public:
    // The folder is the one that the environment names now. The service and the log outlive this object.
    AutostartMirror(DiskPreferences& preferences, platform::Log& log, FileAccess& files = FileAccess::system());
    AutostartMirror(const AutostartMirror&) = delete;

    // Whether the last update left an entry, or all of them, not as they should be. An item that cannot be started is
    // no such failure: its entry stays away, and the log says so.
    bool hasFailed() const { return hasFailed_; }

private:
    struct Item {
        std::string path, value;  // as it is stored, and as it stands in an entry: with escapes
        bool hide;
        std::int64_t count;  // of the items with this path
    };
    struct OwnEntry {
        std::string name, contents;
    };

    void update();
    void updateEntries();
    std::vector<Item> storedItems();
    bool isNewWish(const Item& item, const OwnEntry* entry);
    void remember(const std::vector<platform::PropertyList>& served);
    bool takeFolder(bool make);
    std::vector<OwnEntry> ownEntries();
    bool updateEntry(const Item& item, const OwnEntry* entry, const ApplicationEnvironment& environment);
    Failure write(std::string_view text, const Item& item, const OwnEntry* replaced);
    int moveToFreeName(const Item& item);
    void report(std::string_view what, const Failure& failure);
    bool reportFolder(const Failure& failure);
    void complain(std::string line);

    const std::string path_;
    DiskPreferences& preferences_;
    platform::Log& log_;
    FileAccess& files_;
    DiskPreferences reader_;  // sees what other processes have stored since
    Descriptor folder_;       // during an update; its lock keeps those of other processes out
    std::set<std::string> said_;
    bool hasFailed_ = false;
    std::unique_ptr<platform::Observation> observation_;
};

}  // namespace linux
