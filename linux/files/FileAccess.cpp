#include "linux/files/FileAccess.h"

#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace linux {

FileAccess& FileAccess::system() {
    static FileAccess access;
    return access;
}

int FileAccess::intercept(Call, std::size_t&) { return 0; }

template <typename Function>
auto FileAccess::perform(Call call, std::size_t size, Function function) {
    for (;;) {
        std::size_t allowed = size;
        decltype(function(allowed)) result = intercept(call, allowed);
        if (result == 0) {
            result = function(allowed);
            if (result < 0) result = -errno;
        }
        if (result != -EINTR) return result;
    }
}
template <typename Function>
int FileAccess::perform(Call call, Function function) {
    return perform(call, 0, [&](std::size_t) { return function(); });
}

int FileAccess::open(int folder, const char* path, int flags, mode_t mode) {
    return perform(Call::Open, [&] { return ::openat(folder, path, flags | O_CLOEXEC, mode); });
}
ssize_t FileAccess::read(int file, char* buffer, std::size_t size) {
    return perform(Call::Read, size, [&](std::size_t allowed) { return ::read(file, buffer, allowed); });
}
ssize_t FileAccess::write(int file, const char* bytes, std::size_t size) {
    return perform(Call::Write, size, [&](std::size_t allowed) { return ::write(file, bytes, allowed); });
}
int FileAccess::flush(int file) {
    return perform(Call::Flush, [&] { return ::fsync(file); });
}
int FileAccess::stat(const char* path, struct stat& status) {
    return perform(Call::Stat, [&] { return ::stat(path, &status); });
}
int FileAccess::statDescriptor(int file, struct stat& status) {
    return perform(Call::StatDescriptor, [&] { return ::fstat(file, &status); });
}
ssize_t FileAccess::readLink(const char* path, char* buffer, std::size_t size) {
    return perform(Call::ReadLink, size, [&](std::size_t allowed) { return ::readlink(path, buffer, allowed); });
}
int FileAccess::tryLock(int file) {
    return perform(Call::Lock, [&] { return ::flock(file, LOCK_EX | LOCK_NB); });
}
int FileAccess::rename(int folder, const char* from, const char* to) {
    return perform(Call::Rename, [&] { return ::renameat(folder, from, folder, to); });
}
int FileAccess::renameExclusive(int folder, const char* from, const char* to) {
    return perform(Call::RenameExclusive, [&] { return ::renameat2(folder, from, folder, to, RENAME_NOREPLACE); });
}
int FileAccess::link(int folder, const char* from, const char* to) {
    return perform(Call::Link, [&] { return ::linkat(folder, from, folder, to, 0); });
}
int FileAccess::remove(int folder, const char* name, int flags) {
    return perform(Call::Remove, [&] { return ::unlinkat(folder, name, flags); });
}
int FileAccess::changeMode(int file, mode_t mode) {
    return perform(Call::ChangeMode, [&] { return ::fchmod(file, mode); });
}
int FileAccess::changeOwner(int file, uid_t user, gid_t group) {
    return perform(Call::ChangeOwner, [&] { return ::fchown(file, user, group); });
}
int FileAccess::makeFolder(const char* path, mode_t mode) {
    return perform(Call::MakeFolder, [&] { return ::mkdir(path, mode); });
}

void FileAccess::unlock(int file) noexcept { ::flock(file, LOCK_UN); }
void FileAccess::close(int file) noexcept { ::close(file); }

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        reset();
        files_ = other.files_;
        number_ = std::exchange(other.number_, -1);
    }
    return *this;
}

void Descriptor::reset() noexcept {
    if (number_ >= 0) files_->close(number_);
    number_ = -1;
}

}  // namespace linux
