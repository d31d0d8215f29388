// The folders of applications, read once and then again only where they have changed.
#pragma once

#include "linux/applications/ApplicationEnvironment.h"
#include "linux/applications/ApplicationRecord.h"
#include "linux/files/SmallFile.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace linux {

struct ScannedFile {
    std::string name;                                 // in its folder; an .app's folder
    FileStamp stamp;                                  // of the file that was read; an .app's Info.plist
    std::shared_ptr<const ApplicationRecord> record;  // null: malformed or unreadable
};

struct ScannedFolder {
    std::string path;
    std::size_t depth = 0;  // 0 for a folder of the environment
    FileStamp stamp;        // all zero: there is no such folder
    // A folder that changed a moment ago can change again within the same tick of the clock and show the same time.
    bool isSettled = false;
    std::vector<ScannedFile> files;       // by name
    std::vector<std::string> subfolders;  // real ones by name, then links by name
};

// Reads the folders of desktop entries or of bundles. Subfolders are entered to kMaximumDepth, each physical folder
// once per folder of the environment, so that loops of links end.
class ApplicationScan {
public:
    static constexpr std::size_t kMaximumDesktopEntryDepth = 8;
    static constexpr std::size_t kMaximumBundleDepth = 1;
    static constexpr std::size_t kMaximumFolders = 1024;

    // The coarsest time stamps of file systems in use.
    static constexpr std::chrono::nanoseconds kTimeGranularity = std::chrono::seconds(2);

    // The environment outlives the scan. A folder whose last change is no older than the granularity is read again.
    explicit ApplicationScan(const ApplicationEnvironment& environment,
                             std::chrono::nanoseconds granularity = kTimeGranularity)
        : environment_(environment), granularity_(granularity) {}

    // Looks at the time of every folder and reads again what has changed; with `everyFile` at that of every known file
    // too, since one that is written in place leaves its folder's time alone. True when any record may differ.
    bool refresh(bool everyFile);
    // All folders, in order of precedence.
    const std::vector<ScannedFolder>& folders() const { return folders_; }

private:
    bool foldersChanged() const;
    const ApplicationEnvironment& environment_;
    const std::chrono::nanoseconds granularity_;
    std::vector<ScannedFolder> folders_;
    SmallFileReader reader_;
    bool isScanned_ = false;
};

}  // namespace linux
