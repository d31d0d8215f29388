// The file of a preference domain: reading it, knowing whether it has changed since, and replacing it so that whoever
// reads it sees the old or the new contents, whole, whenever the machine stops.
#pragma once

#include "linux/files/Failure.h"
#include "linux/files/FileAccess.h"
#include "linux/files/FileIdentity.h"
#include "linux/files/FileLock.h"

#include <memory>
#include <string>
#include <string_view>

namespace linux {

// Bytes. A larger file counts as one that cannot be read, and larger contents are not written.
inline constexpr std::size_t kMaximumFileSize = std::size_t{512} << 20;

// A state in which the file was read or written. A default-constructed one means that there is no file.
struct Snapshot {
    Descriptor file;  // stays open: no file that takes this one's place can be given its inode number
    FileIdentity identity;
    std::uint64_t hash = 0;  // of the contents
    bool settled = true;     // false: a later change within the same clock tick may bear the same time stamps

    bool sameContents(const Snapshot& other) const;
};

// True when the file at the path is certainly still in that state; false too when it cannot be looked at. One stat.
bool isCurrent(FileAccess& files, const char* path, const Snapshot& snapshot);

// Reads the whole file, links followed, without ever waiting for a pipe or a device. No file is a success: an empty
// snapshot and a null pointer. After a failure both hold nothing of use. A file that others keep writing into is read a
// few times; the last result counts, and its snapshot is not settled. One of no bytes is read again until it is two
// seconds old: a program that writes in place may be about to fill it.
Failure readFile(FileAccess& files, const char* path, Snapshot& snapshot, std::shared_ptr<const std::string>& bytes);

// Exclusive access to the file among all who take its lock, from begin() to the end of the object.
//
// For the file F behind all links, the lock is flock(2) on ".F.lock" in the same folder, a file that stays for ever;
// the replacement is written as ".F.tmp". The lock keeps out the threads of one process, too. Where the file system has
// no locks nobody is kept out.
class Transaction {
public:
    // Waits for another holder of the lock as long as that.
    Transaction(FileAccess& files, std::string path, LockWait longestWait)
        : files_(files), path_(std::move(path)), longestWait_(longestWait) {}
    Transaction(const Transaction&) = delete;
    ~Transaction() { releaseLock(); }

    // Makes missing folders and takes the lock. EWOULDBLOCK: another program kept it. To be called once, before the
    // rest.
    Failure begin();
    bool hasLock() const { return hasLock_; }  // false after begin(): the file system has none
    // Afterwards the file holds these bytes, or a failure is returned and it holds what it held. A file that is there
    // keeps its mode and, as far as this process may, its owner; a new one has mode 0600. The bytes are on the disk,
    // the name is with flushFolder(); until then a crash of the machine decides between the old file and the new one.
    Failure replace(std::string_view bytes, Snapshot& written);
    Failure flushFolder();
    // Gives the file a name that says that it is damaged and since when, never one that is taken, and tells which,
    // without its folder.
    Failure moveAside(std::string& newName);

private:
    Failure openAndLock();
    bool lockIsAtItsPath();
    void releaseLock() noexcept;
    Failure install(int file, std::string_view bytes);
    void identify(Snapshot& written, std::string_view bytes);

    FileAccess& files_;
    const std::string path_;
    const LockWait longestWait_;
    std::string target_;             // the path behind all links
    std::string folderPath_, name_;  // its two parts
    std::string temporary_;
    Descriptor folder_, lock_;
    bool hasLock_ = false;
    pid_t owner_ = 0;  // the process that took the lock: a forked copy must not free it
};

}  // namespace linux
