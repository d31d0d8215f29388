#include "linux/files/FileIdentity.h"

#include <ctime>

namespace linux {
namespace {

std::int64_t nanoseconds(const timespec& time) { return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec; }

}  // namespace

FileIdentity::FileIdentity(const struct stat& status)
    : device(status.st_dev),
      inode(status.st_ino),
      size(status.st_size),
      modified(nanoseconds(status.st_mtim)),
      changed(nanoseconds(status.st_ctim)) {}

FileIdentity FileIdentity::of(int folder, const char* path) {
    struct stat status;
    return ::fstatat(folder, path, &status, 0) == 0 ? FileIdentity(status) : FileIdentity();
}

std::int64_t fileClock() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return nanoseconds(now);
}

}  // namespace linux
