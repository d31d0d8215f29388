// The file of a preference domain: reading it, knowing whether it has changed since, and replacing it so that whoever
// reads it sees the old or the new contents, whole, whenever the machine stops.
#pragma once

#include "linux/files/Failure.h"
#include "linux/files/FileAccess.h"
#include "linux/files/FileIdentity.h"

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
    std::size_t hash = 0;  // of the contents
    bool settled = true;   // false: a later change within the same clock tick may bear the same time stamps

    bool sameContents(const Snapshot& other) const;
};

// True when the file at the path is certainly still in that state; false too when it cannot be looked at. One stat.
bool isCurrent(FileAccess& files, const char* path, const Snapshot& snapshot);

// Reads the whole file, links followed, without ever waiting for a pipe or a device. No file is a success: an empty
// snapshot and a null pointer. After a failure both hold nothing of use. A file that others keep writing into is read a
// few times; the last result counts, and its snapshot is not settled.
Failure readFile(FileAccess& files, const char* path, Snapshot& snapshot, std::shared_ptr<const std::string>& bytes);

// Exclusive access to the file among all who take its lock, from begin() to the end of the object.
//
// For the file F behind all links, the lock is flock(2) on ".F.lock" in the same folder, a file that stays for ever;
// the replacement is written as ".F.tmp". The lock keeps out the threads of one process, too.
class Transaction {
public:
    Transaction(FileAccess& files, std::string path) : files_(files), path_(std::move(path)) {}
    Transaction(const Transaction&) = delete;
    ~Transaction() { releaseLock(); }

    // Makes missing folders and waits for the lock, for as long as another process keeps it. To be called once, before
    // the rest.
    Failure begin();
    // Afterwards the file holds these bytes and is on the disk, or a failure is returned and it holds what it held.
    // Only when flushing the folder is what fails, it holds the new bytes, and a crash of the machine decides. A file
    // that is there keeps its mode and, as far as this process may, its owner; a new one has mode 0600.
    Failure replace(std::string_view bytes, Snapshot& written);
    // Gives the file a name that says that it is damaged and since when, never one that is taken, and tells which,
    // without its folder.
    Failure moveAside(std::string& newName);

private:
    Failure takeLock();
    bool lockIsAtItsPath();
    void releaseLock() noexcept;
    Failure install(int file, std::string_view bytes);
    void identify(Snapshot& written, std::string_view bytes);
    Failure flushFolder();

    FileAccess& files_;
    const std::string path_;
    std::string target_;             // the path behind all links
    std::string folderPath_, name_;  // its two parts
    std::string temporary_;
    Descriptor folder_, lock_;
    pid_t owner_ = 0;  // the process that took the lock: a forked copy must not free it
};

}  // namespace linux
