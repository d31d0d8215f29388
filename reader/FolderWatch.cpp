#include "reader/FolderWatch.h"

#include "linux/files/FileSteps.h"
#include "linux/files/Paths.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace reader {

using namespace linux;

namespace {

constexpr std::uint32_t kChanges = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE |
                                   IN_DELETE_SELF | IN_MOVE_SELF | IN_ATTRIB | IN_ONLYDIR;

bool isFolder(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

int FolderWatch::start(std::vector<std::string> paths) {
    int number = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (number < 0) return errno;
    paths_ = std::move(paths);
    events_ = Descriptor(FileAccess::system(), number);
    watch();
    if (!watched_.empty()) return 0;
    int error = errno;
    events_.reset();
    return error;
}

void FolderWatch::takeIn() {
    if (!events_) return;
    alignas(inotify_event) char buffer[16 * 1024];
    bool hasHappened = false;
    while (::read(events_.number(), buffer, sizeof buffer) > 0) hasHappened = true;
    if (hasHappened) watch();
}

// Watching a folder again that is watched already changes nothing.
void FolderWatch::watch() {
    std::vector<int> watched;
    for (const std::string& path : paths_) {
        std::string target = path;
        (void)resolveLinks(FileAccess::system(), target);
        watchFolder(std::string(folderOf(path)), watched);
        watchFolder(std::string(folderOf(target)), watched);
    }
    for (int old : watched_)
        if (std::ranges::find(watched, old) == watched.end()) ::inotify_rm_watch(events_.number(), old);
    watched_ = std::move(watched);
}

// A folder that is made while the one around it is being watched would be missed: then it is tried again.
void FolderWatch::watchFolder(const std::string& folder, std::vector<int>& watched) {
    std::string inner, outer = folder;
    for (;;) {
        int number = ::inotify_add_watch(events_.number(), outer.c_str(), kChanges);
        if (number >= 0) {
            watched.push_back(number);
            if (inner.empty() || !isFolder(inner)) return;
            outer = folder;
            inner.clear();
            continue;
        }
        if ((errno != ENOENT && errno != ENOTDIR) || outer == "/") return;
        inner = std::exchange(outer, std::string(folderOf(outer)));
    }
}

}  // namespace reader
