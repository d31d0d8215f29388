#include "host/helper/HelperLock.h"

#include "linux/files/FileSteps.h"
#include "linux/files/Paths.h"
#include "linux/preferences/DiskPreferences.h"
#include "settings/EntryList.h"

#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <string>

using namespace linux;

namespace helper {
namespace {

// The runtime folder is the machine's own, where the home may be shared by several.
std::string lockFolder() {
    if (std::string runtime = runtimeFolder(); !runtime.empty()) return runtime;
    Descriptor made;  // where it cannot be, opening the lock file tells why
    (void)openFolder(FileAccess::system(), preferencesFolder(), true, made);
    return preferencesFolder();
}

std::string lockPath() { return lockFolder() + "/." + std::string(settings::kSettingsDomain) + ".helper.lock"; }

Descriptor openLockFile(const std::string& path) {
    FileAccess& files = FileAccess::system();
    return {files, files.open(AT_FDCWD, path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, 0600)};
}

std::string readyMark(int process) { return "ready " + std::to_string(process) + "\n"; }

}  // namespace

Descriptor takeHelperLock() {
    Descriptor lock = openLockFile(lockPath());
    if (lock && ::flock(lock.number(), LOCK_EX | LOCK_NB) != 0) return {FileAccess::system(), -errno};
    return lock;
}

// The process is told from one before, which may have left its mark and the file.
void sayReady(const Descriptor& lock) {
    std::string mark = readyMark(::getpid());
    (void)!::ftruncate(lock.number(), 0);
    (void)!::pwrite(lock.number(), mark.data(), mark.size(), 0);
}

HelperLockState helperLockState() {
    HelperLockState state;
    state.path = lockPath();
    Descriptor lock = openLockFile(state.path);
    if (!lock) {
        state.error = lock.error();
        return state;
    }
    state.holder = lockHolder(FileAccess::system(), lock.number());
    char mark[32] = {};
    const auto length = ::pread(lock.number(), mark, sizeof mark, 0);
    state.isReady = length > 0 && std::string(mark, std::size_t(length)) == readyMark(state.holder.process);
    return state;
}

}  // namespace helper
