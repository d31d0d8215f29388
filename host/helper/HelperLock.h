// One helper for each user: whoever holds the lock is the one.
#pragma once

#include "linux/files/FileLock.h"

#include <string>

namespace helper {

// Never waits. Held until the descriptor goes, with the process at the latest. Not valid, and error() is EWOULDBLOCK,
// while another process holds it; any other error tells why the lock file cannot be opened.
linux::Descriptor takeHelperLock();

// Written into the lock by whoever holds it, when all that it does is set up.
void sayReady(const linux::Descriptor& lock);

// What others see of the lock, which they do not touch.
struct HelperLockState {
    std::string path;
    int error = 0;             // why the lock file can be neither opened nor made; 0 when it can
    linux::LockHolder holder;  // nobody where the holder cannot be seen
    bool isReady = false;      // the holder has said so
};
HelperLockState helperLockState();

}  // namespace helper
