#include "linux/files/SmallFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace linux {

namespace {

std::int64_t nanoseconds(const timespec& time) { return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec; }

}  // namespace

FileStamp FileStamp::from(const struct stat& status) {
    return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size), nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

FileStamp FileStamp::of(int folder, const char* path) {
    struct stat status;
    return ::fstatat(folder, path, &status, 0) == 0 ? from(status) : FileStamp();
}

SmallFileReader::SmallFileReader() : buffer_(kMaximumSize + 1, '\0') {}

std::optional<std::string_view> SmallFileReader::read(int folder, const char* path) {
    stamp_ = {};
    // Opening a FIFO without O_NONBLOCK waits for its other end.
    const int file = ::openat(folder, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) {
        error_ = errno;
        return {};
    }
    const bool isRead = readAll(file);
    ::close(file);
    if (!isRead) return {};
    return std::string_view(buffer_).substr(0, size_);
}

bool SmallFileReader::readAll(int file) {
    struct stat status;
    error_ = ::fstat(file, &status) == 0 ? 0 : errno;
    if (error_) return false;
    stamp_ = FileStamp::from(status);
    error_ = !S_ISREG(status.st_mode) ? EINVAL : stamp_.size > kMaximumSize ? EFBIG : 0;
    if (error_) return false;
    // The stated size is only a guess, so reading goes on to the end.
    for (size_ = 0; size_ <= kMaximumSize;) {
        const ssize_t got = ::read(file, buffer_.data() + size_, buffer_.size() - size_);
        if (got == 0) return true;
        if (got > 0) {
            size_ += static_cast<std::size_t>(got);
        } else if (errno != EINTR) {
            error_ = errno;
            return false;
        }
    }
    error_ = EFBIG;
    return false;
}

}  // namespace linux
