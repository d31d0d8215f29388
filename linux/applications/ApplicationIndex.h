// The installed applications, by identifier, creator code, name and path. Folders are listed at the first look-up and
// again where they have changed. A desktop file is read when somebody asks for it: GLib's reader takes five times as
// long as the disk.
#pragma once

#include "linux/applications/ApplicationRecord.h"
#include "linux/files/FileIdentity.h"
#include "platform/FileServices.h"

#include <chrono>
#include <functional>
#include <set>
#include <unordered_map>

namespace linux {

// Not for several threads at once. Records are good until the next refresh(); whether their programs are there is not
// known here. Each physical folder is entered once per folder of the environment, so that loops of links end.
class ApplicationIndex {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    using Candidates = std::vector<const ApplicationRecord*>;

    // The times of folders are looked at no more often than this, those of files, which folders do not show, so much
    // more seldom: a look-up in between costs no system call.
    static constexpr std::chrono::milliseconds kFolderInterval{250};
    static constexpr std::chrono::milliseconds kFileInterval{10'000};
    static constexpr int kMaximumDesktopEntryDepth = 8, kMaximumBundleDepth = 1;
    static constexpr std::size_t kMaximumFolders = 1024;

    // The environment outlives the index. Nothing is read before the first refresh(). A folder that changed no longer
    // ago than the granularity of a file system's times is listed again at each look.
    ApplicationIndex(const ApplicationEnvironment& environment, Clock clock,
                     std::chrono::nanoseconds granularity = std::chrono::seconds(2))
        : environment_(environment), clock_(std::move(clock)), granularity_(granularity) {}
    ApplicationIndex(const ApplicationIndex&) = delete;

    // Takes in what has changed on the disk if the last look was long enough ago; true when it looked.
    bool refresh();
    // Takes in every change, that of a file written in place too.
    void refreshFully();

    // Applications that match exactly, in order of precedence: desktop entries before bundles, the user's before the
    // system's. Desktop entries that are hidden, of another type, or masked by one with the same identifier are left
    // out.
    Candidates withIdentifier(const std::string& identifier);
    Candidates withCreator(platform::FourCharCode creator) const;
    // An .app's folder name, else the untranslated name of a desktop entry with ".app" behind it.
    Candidates withFileName(std::string_view name);
    const Candidates& all();

    // The record of a file in one of the folders, masked, hidden or not; null for any other path.
    const ApplicationRecord* atPath(const std::string& path);
    std::size_t folderCount() const { return folders_.size(); }

private:
    struct Tree {
        std::string root;
        bool isOfBundles;
        std::vector<std::string> folders;       // of the next depth
        std::set<platform::ItemIdentity> seen;  // its physical folders
    };
    struct Folder {
        std::string path;
        FileIdentity stamp;  // all zero: there is no such folder
        bool isSettled;      // one that changed a moment ago can change again without showing another time
    };
    struct File {
        std::string path;
        bool isBundle = false;
        std::string identifier, name;  // of a desktop entry: by its place, and as far as it can be told without GLib
        FileIdentity stamp;            // from before it was read; all zero: it was not
        bool isRead = false;
        std::optional<ApplicationRecord> record;  // nothing: malformed or unreadable
    };

    void scan();
    void scanTree(Tree tree);
    void scanFolder(const std::string& path, Tree& tree);
    void addFile(const std::string& path, const Tree& tree);
    const ApplicationRecord* read(File& file);
    const ApplicationRecord* entry(const std::string& identifier);
    void readNames();

    const ApplicationEnvironment& environment_;
    const Clock clock_;
    const std::chrono::nanoseconds granularity_;
    std::chrono::steady_clock::time_point foldersSeen_, filesSeen_;
    std::vector<Folder> folders_;
    std::unordered_map<std::string, File> files_, oldFiles_;  // by path
    std::vector<File*> inOrder_;
    std::unordered_map<std::string, std::vector<File*>> byIdentifier_, byName_;  // of desktop entries
    Candidates bundles_, all_;
};

}  // namespace linux
