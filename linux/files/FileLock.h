// Exclusive locks of open files, flock(2), without waiting for ever.
#pragma once

#include "linux/files/Failure.h"
#include "linux/files/FileAccess.h"

#include <chrono>
#include <string>

namespace linux {

using LockWait = std::chrono::milliseconds;

// True for the error numbers by which a file system says that it has no locks at all.
bool meansNoLocks(int error);

// Takes the lock, and waits for whoever has it as long as that. It is freed with the last descriptor of the open file,
// at the latest. When the time is over: a failure with EWOULDBLOCK, which names the holder.
Failure takeLock(FileAccess& files, int file, LockWait longestWait);

struct LockHolder {
    std::string program;
    int process = 0;
};
// Who has the lock of the file. Empty and 0 when nobody has, and when the holder cannot be seen from here, being on
// another machine or in another container.
LockHolder lockHolder(FileAccess& files, int file);

}  // namespace linux
