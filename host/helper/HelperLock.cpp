#include "host/helper/HelperLock.h"

#include "linux/files/FileSteps.h"
#include "linux/files/Paths.h"
#include "linux/preferences/DiskPreferences.h"
#include "settings/EntryList.h"

#include <sys/file.h>

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

}  // namespace

Descriptor takeHelperLock() {
    FileAccess& files = FileAccess::system();
    std::string path = lockFolder() + "/." + std::string(settings::kSettingsDomain) + ".helper.lock";
    Descriptor lock(files, files.open(AT_FDCWD, path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, 0600));
    if (lock && ::flock(lock.number(), LOCK_EX | LOCK_NB) != 0) return {files, -errno};
    return lock;
}

}  // namespace helper
