#include "linux/preferences/DomainWatch.h"

#include "linux/files/FileSteps.h"
#include "linux/files/Paths.h"

#include <sys/inotify.h>

#include <cerrno>

namespace linux {

using namespace platform;

namespace {

constexpr std::uint32_t kChanges = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr std::uint32_t kEnds = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

}  // namespace

DomainWatch::DomainWatch(DiskPreferences& preferences, std::string domain)
    : preferences_(preferences), domain_(std::move(domain)) {
    FileAccess& files = FileAccess::system();
    const std::string& folder = preferences_.folder();
    Descriptor made;  // where it cannot be, the watch tells
    (void)openFolder(files, folder, true, made);
    int number = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    events_ = Descriptor(files, number < 0 ? -errno : number);
    folderWatch_ = ::inotify_add_watch(events_.number(), folder.c_str(), kChanges | kEnds | IN_ONLYDIR);
    if (folderWatch_ < 0) events_ = Descriptor(files, -errno);
    // The folder itself tells of its removal only when no process has a file of it open any more.
    parentWatch_ = ::inotify_add_watch(events_.number(), std::string(folderOf(folder)).c_str(), IN_DELETE | IN_ONLYDIR);
    watchFolders();
    (void)readValues();
}

// Watching a folder again that is watched already changes nothing. A link that leads nowhere yet is followed, too.
void DomainWatch::watchFolders() {
    std::string file = preferences_.folder() + "/" + domain_ + ".plist", target = file;
    (void)resolveLinks(FileAccess::system(), target);
    names_ = {std::string(nameOf(file)), std::string(nameOf(target))};
    std::string targetFolder(folderOf(target));
    ::inotify_add_watch(events_.number(), targetFolder.c_str(), kChanges | IN_ONLYDIR | IN_MASK_ADD);
}

bool DomainWatch::isAbout(const inotify_event& event, bool& isGone) const {
    std::string_view name = event.len ? event.name : "";
    isGone |= (event.wd == folderWatch_ && (event.mask & kEnds)) ||
              (event.wd == parentWatch_ && (event.mask & IN_DELETE) && name == nameOf(preferences_.folder()));
    return (event.mask & IN_Q_OVERFLOW) || names_.contains(name);
}

DomainWatch::Outcome DomainWatch::takeIn() {
    alignas(inotify_event) char buffer[16 * 1024];
    bool isTouched = false, isGone = false;
    for (ssize_t size = 0; (size = ::read(events_.number(), buffer, sizeof buffer)) > 0;) {
        for (const char* at = buffer; at < buffer + size;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(at);
            isTouched |= isAbout(event, isGone);
            at += sizeof event + event.len;
        }
    }
    if (isGone) return Outcome::Gone;
    if (!isTouched) return Outcome::Same;
    watchFolders();
    return readValues() ? Outcome::Changed : Outcome::Same;
}

bool DomainWatch::readValues() {
    (void)preferences_.synchronize(domain_);
    PropertyList now = preferences_.copyDomain(domain_);
    if (now == values_) return false;
    values_ = std::move(now);
    return true;
}

}  // namespace linux
