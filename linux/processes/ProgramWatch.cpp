#include "linux/processes/ProgramWatch.h"

#include "linux/files/Paths.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace linux {

namespace {

constexpr const char* kOwnProgram = "/proc/self/exe";

}  // namespace

ProgramWatch::ProgramWatch() {
    std::error_code none;
    path_ = std::filesystem::read_symlink(kOwnProgram, none).string();
    FileAccess& files = FileAccess::system();
    int number = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    events_ = Descriptor(files, number < 0 ? -errno : number);
    // A file that is still being written has not been closed, and one that is copied becomes executable last.
    constexpr std::uint32_t kCompletions = IN_MOVED_TO | IN_CLOSE_WRITE | IN_ATTRIB;
    const std::string folder(folderOf(path_));
    if (::inotify_add_watch(events_.number(), folder.c_str(), kCompletions | IN_ONLYDIR) < 0)
        events_ = Descriptor(files, -errno);
}

bool ProgramWatch::isReplaced() const {
    alignas(inotify_event) char buffer[4096];
    while (::read(events_.number(), buffer, sizeof buffer) > 0) continue;
    struct stat own, present;
    if (::stat(kOwnProgram, &own) != 0 || ::stat(path_.c_str(), &present) != 0) return false;
    const bool isOther = own.st_dev != present.st_dev || own.st_ino != present.st_ino;
    return isOther && S_ISREG(present.st_mode) && ::access(path_.c_str(), X_OK) == 0;
}

void ProgramWatch::startAnew() const {
    char* const arguments[] = {const_cast<char*>(path_.c_str()), nullptr};
    ::execv(path_.c_str(), arguments);
}

}  // namespace linux
