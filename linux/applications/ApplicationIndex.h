// The installed applications, by identifier, creator code, name and path.
#pragma once

#include "linux/applications/ApplicationScan.h"

#include <chrono>
#include <functional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace linux {

// Not for several threads at once. Records are good until the next refresh(); whether their programs are there is not
// known here.
class ApplicationIndex {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    using Candidates = std::span<const ApplicationRecord* const>;

    // Folder times are looked at no more often than this, those of the files themselves so much more seldom: a look-up
    // in between costs no system call.
    static constexpr std::chrono::milliseconds kFolderInterval{250};
    static constexpr std::chrono::milliseconds kFileInterval{10'000};

    // The environment outlives the index. Nothing is read before the first refresh().
    ApplicationIndex(const ApplicationEnvironment& environment, Clock clock);

    // Takes in what has changed on the disk if the last look was long enough ago. True when it looked.
    bool refresh();
    // Takes in every change, that of a file written in place too.
    void refreshFully();
    // Rises with every change of the records.
    unsigned generation() const { return generation_; }

    // Applications that match exactly, in order of precedence: desktop entries before bundles, the user's before the
    // system's. Desktop entries that are hidden, of another type, or masked by one with the same identifier are left
    // out.
    Candidates withIdentifier(std::string_view identifier) const { return find(byIdentifier_, identifier); }
    // An .app's folder name, or the untranslated name of a desktop entry with ".app" behind it.
    Candidates withFileName(std::string_view name) const;
    Candidates withCreator(platform::FourCharCode creator) const { return find(byCreator_, creator); }
    Candidates all() const { return all_; }

    // The record of a file in one of the folders, masked, hidden or not; null for any other path.
    const ApplicationRecord* atPath(std::string_view path) const;

private:
    template <typename Key>
    using Map = std::unordered_map<Key, std::vector<const ApplicationRecord*>>;
    template <typename Key>
    static Candidates find(const Map<Key>& map, Key key) {
        const auto found = map.find(key);
        return found == map.end() ? Candidates() : Candidates(found->second);
    }
    void look(bool everyFile, std::chrono::steady_clock::time_point now);
    void rebuild();
    void add(const ApplicationRecord& record);

    Clock clock_;
    ApplicationScan scan_;
    bool isScanned_ = false;
    std::chrono::steady_clock::time_point foldersSeen_, filesSeen_;
    unsigned generation_ = 0;

    // Keys and pointers lead into the scan's records.
    Map<std::string_view> byIdentifier_, bundlesByName_, entriesByName_;
    Map<platform::FourCharCode> byCreator_;
    std::unordered_map<std::string_view, const ApplicationRecord*> byPath_;
    std::vector<const ApplicationRecord*> all_;
};

}  // namespace linux
