#include "host/helper/SettingsWatch.h"

#include "linux/preferences/DomainFile.h"
#include "settings/EntryList.h"

#include <sys/inotify.h>

#include <cerrno>
#include <filesystem>

using namespace platform;
using namespace linux;
using namespace settings;
namespace fs = std::filesystem;

namespace helper {
namespace {

constexpr std::uint32_t kChanges = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr std::uint32_t kEnds = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

}  // namespace

SettingsWatch::SettingsWatch(LinuxStore& store) : store_(store) {
    FileAccess& files = FileAccess::system();
    const std::string& folder = store_.preferences.folder();
    (void)makeFolders(files, folder);
    int number = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    events_ = Descriptor(files, number < 0 ? -errno : number);
    folderWatch_ = ::inotify_add_watch(events_.number(), folder.c_str(), kChanges | kEnds | IN_ONLYDIR);
    if (folderWatch_ < 0) events_ = Descriptor(files, -errno);
    watchFolders();
    readSettings();
}

// Watching a folder again that is watched already changes nothing.
void SettingsWatch::watchFolders() {
    const std::string& folder = store_.preferences.folder();
    fs::path file = fs::path(folder) / (std::string(kSettingsDomain) + ".plist");
    names_ = {file.filename()};
    std::error_code error;
    fs::path target = fs::canonical(file, error);
    if (error || target.parent_path() == fs::canonical(folder, error)) return;
    names_.insert(target.filename());
    ::inotify_add_watch(events_.number(), target.parent_path().c_str(), kChanges | IN_ONLYDIR);
}

bool SettingsWatch::takeIn() {
    alignas(inotify_event) char buffer[16 * 1024];
    bool isChanged = false, isGone = false;
    for (ssize_t size = 0; (size = ::read(events_.number(), buffer, sizeof buffer)) > 0;) {
        for (const char* at = buffer; at < buffer + size;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(at);
            isGone |= event.wd == folderWatch_ && (event.mask & kEnds);
            isChanged |= (event.mask & IN_Q_OVERFLOW) || (event.len && names_.contains(std::string_view(event.name)));
            at += sizeof event + event.len;
        }
    }
    if (isGone) return false;
    if (isChanged) {
        watchFolders();
        readSettings();
    }
    return true;
}

void SettingsWatch::readSettings() {
    store_.preferences.synchronize(kSettingsDomain);
    PropertyList now = store_.preferences.copyDomain(kSettingsDomain);
    if (now == known_) return;
    known_ = std::move(now);
    if (store_.preferences.getBooleanValue(kLogStuffKey, kSettingsDomain))
        store_.log("[Typeslate] Took in the settings: %d entries, %s", known_[kEntryListKey].size(),
                   store_.preferences.getBooleanValue(kDisabledKey, kSettingsDomain) ? "disabled" : "enabled");
}

}  // namespace helper
