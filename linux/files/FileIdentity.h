// What tells one state of a file from another without reading it.
#pragma once

#include "platform/FileServices.h"

#include <sys/stat.h>

#include <cstdint>

namespace linux {

// All zero when there is no file. Two states of one file can share an identity when they are less than a tick of
// fileClock() apart.
struct FileIdentity {
    std::uint64_t device = 0, inode = 0;
    std::int64_t size = 0;                   // bytes
    std::int64_t modified = 0, changed = 0;  // nanoseconds since 1970

    FileIdentity() = default;
    explicit FileIdentity(const struct stat& status);
    // Links are followed; a relative path starts at the folder, a descriptor or AT_FDCWD.
    static FileIdentity of(int folder, const char* path);

    bool operator==(const FileIdentity&) const = default;
    platform::ItemIdentity item() const { return {device, inode}; }
};

// Nanoseconds since 1970 on the clock from which file systems take their time stamps. It advances by ticks of some
// milliseconds.
std::int64_t fileClock();

}  // namespace linux
