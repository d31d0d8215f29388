#include "linux/files/FileLock.h"

#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <thread>

namespace linux {

namespace {

using Clock = std::chrono::steady_clock;

// A saving takes a millisecond or two. Whoever looks more seldom than that leaves the lock idle among many writers.
constexpr std::chrono::microseconds kFirstPause(100), kLongestPause(1000);

std::string programName(int process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    return std::getline(file, name) ? name : std::string("?");
}

}  // namespace

bool meansNoLocks(int error) { return error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS; }

Failure takeLock(FileAccess& files, int file, LockWait longestWait) {
    const Clock::time_point end = Clock::now() + longestWait;
    int error = files.tryLock(file);
    for (auto pause = kFirstPause; error == -EWOULDBLOCK && Clock::now() < end;
         pause = std::min(2 * pause, kLongestPause)) {
        std::this_thread::sleep_for(pause);
        error = files.tryLock(file);
    }
    if (error >= 0) return {};
    if (error != -EWOULDBLOCK) return {"take the lock", -error};
    LockHolder holder = lockHolder(files, file);
    std::string who =
        holder.process ? holder.program + ", process " + std::to_string(holder.process) : "another program";
    return {"take the lock", EWOULDBLOCK, who + " holds it", {}, holder.program, holder.process};
}

// A line of /proc/locks, proc(5): "1: FLOCK  ADVISORY  WRITE 4711 fd:00:131081 0 EOF". Those who wait have "->" after
// the number, and are passed over by the format.
LockHolder lockHolder(FileAccess& files, int file) {
    struct stat status;
    if (files.statDescriptor(file, status) < 0) return {};
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) {
        int process = 0;
        unsigned major = 0, minor = 0;
        unsigned long long inode = 0;
        if (std::sscanf(line.c_str(), "%*d: FLOCK %*s %*s %d %x:%x:%llu", &process, &major, &minor, &inode) != 4)
            continue;
        if (inode == status.st_ino && makedev(major, minor) == status.st_dev && process > 0)
            return {programName(process), process};
    }
    return {};
}

}  // namespace linux
