#include "linux/preferences/DomainFile.h"

#include "linux/files/FileSteps.h"
#include "linux/files/Paths.h"
#include "linux/files/WholeFile.h"
#include "propertylist/Hash.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

namespace linux {

namespace {

constexpr mode_t kFileMode = 0600;

// `steady`: nobody wrote into the file meanwhile.
Failure readOnce(FileAccess& files, const char* path, Snapshot& snapshot, std::string& bytes, bool& steady) {
    snapshot.file = openForReading(files, AT_FDCWD, path);
    if (!snapshot.file) return {"open", snapshot.file.error()};
    std::int64_t clock = fileClock();
    if (Failure failure = readWhole(files, snapshot.file, kMaximumFileSize, bytes, snapshot.identity)) return failure;
    struct stat after;
    if (int error = files.statDescriptor(snapshot.file.number(), after); error < 0) return {"look at", -error};
    steady = FileIdentity(after) == snapshot.identity && std::ssize(bytes) == snapshot.identity.size;
    snapshot.settled = steady && snapshot.identity.changed < clock;
    return {};
}

// True for a file of no bytes that was made or emptied less than two seconds ago. Its time may be finer than the
// clock's.
bool mayBeAboutToBeFilled(const Snapshot& snapshot) {
    constexpr std::int64_t kYoung = 2'000'000'000;  // nanoseconds
    std::int64_t age = fileClock() - snapshot.identity.modified;
    return snapshot.identity.size == 0 && age > -kYoung && age < kYoung;
}

std::string utcTimeStamp() {
    std::time_t now = std::time(nullptr);
    std::tm parts{};
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", gmtime_r(&now, &parts))};
}

}  // namespace

bool Snapshot::sameContents(const Snapshot& other) const {
    return static_cast<bool>(file) == static_cast<bool>(other.file) && identity.size == other.identity.size &&
           hash == other.hash;
}

bool isCurrent(FileAccess& files, const char* path, const Snapshot& snapshot) {
    struct stat status;
    int error = files.stat(path, status);
    if (error == -ENOENT) return !snapshot.file;
    return error == 0 && snapshot.settled && snapshot.file && FileIdentity(status) == snapshot.identity;
}

Failure readFile(FileAccess& files, const char* path, Snapshot& snapshot, std::shared_ptr<const std::string>& bytes) {
    constexpr int kAttempts = 5;  // against a program that writes without the lock at this very moment
    constexpr std::chrono::milliseconds kPause(20);
    auto buffer = std::make_shared<std::string>();
    bool steady = false;
    for (int attempt = 0; attempt < kAttempts && !steady;) {
        snapshot = {};
        Failure failure = readOnce(files, path, snapshot, *buffer, steady);
        if (failure.error == ENOENT) {
            snapshot = {};
            bytes = nullptr;
            return {};
        }
        if (failure) return failure;
        if (mayBeAboutToBeFilled(snapshot)) {
            std::this_thread::sleep_for(kPause);
            steady = false;
        } else {
            ++attempt;
        }
    }
    snapshot.hash = propertylist::hashContents(*buffer);
    bytes = std::move(buffer);
    return {};
}

Failure Transaction::begin() {
    constexpr int kAttempts = 1000;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        target_ = path_;
        if (Failure failure = resolveLinks(files_, target_)) return failure;
        folderPath_ = folderOf(target_);
        name_ = nameOf(target_);
        temporary_ = "." + name_ + ".tmp";
        if (name_.empty() || name_ == "." || name_ == "..") return {"follow link", EISDIR};
        bool make = target_ == path_;  // never the folder that a dangling link points into
        if (Failure failure = openFolder(files_, folderPath_, make, folder_)) return failure;
        if (Failure failure = openAndLock()) return failure;
        if (!hasLock_ || lockIsAtItsPath()) return {};
        releaseLock();
    }
    return {"take the lock", 0, "the folder keeps changing"};
}

Failure Transaction::openAndLock() {
    std::string lockName = "." + name_ + ".lock";
    lock_ = Descriptor(
        files_, files_.open(folder_.number(), lockName.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, kFileMode));
    if (!lock_) return {"open lock file", lock_.error()};
    giveToOwnerOf(files_, folder_.number(), lock_.number());
    if (Failure failure = takeLock(files_, lock_.number(), longestWait_)) {
        lock_.reset();
        return meansNoLocks(failure.error) ? Failure() : failure;
    }
    hasLock_ = true;
    owner_ = getpid();
    return {};
}

// Someone may have removed the lock file, moved the folder or turned the link while we waited.
bool Transaction::lockIsAtItsPath() {
    struct stat own, atPath;
    std::string target = path_;
    if (resolveLinks(files_, target) || target != target_) return false;
    std::string lockPath = folderPath_ + "/." + name_ + ".lock";
    return files_.statDescriptor(lock_.number(), own) == 0 && files_.stat(lockPath.c_str(), atPath) == 0 &&
           own.st_dev == atPath.st_dev && own.st_ino == atPath.st_ino;
}

// Closing alone would leave the lock with a process that another thread has just forked, until that one runs a program.
void Transaction::releaseLock() noexcept {
    if (lock_ && owner_ == getpid()) files_.unlock(lock_.number());
    lock_.reset();
    hasLock_ = false;
}

Failure Transaction::install(int file, std::string_view bytes) {
    if (Failure failure = takeOverOwnerAndMode(files_, folder_.number(), target_, file)) return failure;
    if (Failure failure = writeAndFlush(files_, file, bytes)) return failure;
    int error = files_.rename(folder_.number(), temporary_.c_str(), name_.c_str());
    return error < 0 ? Failure{"rename", -error} : Failure{};
}

Failure Transaction::replace(std::string_view bytes, Snapshot& written) {
    written = {};
    if (Failure failure = makeTemporary(files_, folder_.number(), temporary_, kFileMode, written.file)) return failure;
    if (Failure failure = install(written.file.number(), bytes)) {
        (void)files_.remove(folder_.number(), temporary_.c_str());
        return failure;
    }
    identify(written, bytes);
    return {};
}

// Whoever writes into the file between the rename and the look at it leaves equal times of change and modification, or
// a time of change that the clock has not passed.
void Transaction::identify(Snapshot& written, std::string_view bytes) {
    std::int64_t clock = fileClock();
    struct stat status;
    written.hash = propertylist::hashContents(bytes);
    written.settled = files_.statDescriptor(written.file.number(), status) == 0;
    if (!written.settled) return;
    written.identity = FileIdentity(status);
    written.settled = written.identity.modified < written.identity.changed && written.identity.changed < clock;
}

Failure Transaction::flushFolder() {
    int error = files_.flush(folder_.number());
    bool needsNone = error == -EINVAL;  // so says a file system whose folders cannot be flushed
    return error < 0 && !needsNone ? Failure{"flush folder", -error} : Failure{};
}

Failure Transaction::moveAside(std::string& newName) {
    constexpr int kMostOfOneSecond = 100;
    std::string base = name_ + ".damaged-" + utcTimeStamp();
    int error = -EEXIST;
    for (int count = 1; error == -EEXIST && count <= kMostOfOneSecond; ++count) {
        newName = count == 1 ? base : base + "-" + std::to_string(count);
        error = renameUnlessTaken(files_, folder_.number(), name_.c_str(), newName.c_str());
    }
    return error < 0 ? Failure{"move the damaged file aside", -error} : flushFolder();
}

}  // namespace linux
