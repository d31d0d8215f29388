// Small files of foreign origin: read whole or not at all, and recognised again when they have changed.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace linux {

// What a file's or folder's times and identity tell about its content. All zero when there is none.
struct FileStamp {
    std::uint64_t device = 0, inode = 0, size = 0;
    std::int64_t modified = 0, changed = 0;  // nanoseconds since 1970
    bool operator==(const FileStamp&) const = default;

    static FileStamp from(const struct stat& status);
    // Links are followed; a relative path starts at the folder.
    static FileStamp of(int folder, const char* path);
};

class SmallFileReader {
public:
    static constexpr std::size_t kMaximumSize = 1 << 20;
    SmallFileReader();

    // The content, good until the next call; never waits for a FIFO or a device. On failure error() tells why: EINVAL
    // for what is no regular file, EFBIG for one that is too long.
    std::optional<std::string_view> read(int folder, const char* path);
    const FileStamp& stamp() const { return stamp_; }  // of the file last read, from before it was read
    int error() const { return error_; }

private:
    bool readAll(int file);
    std::string buffer_;
    std::size_t size_ = 0;
    FileStamp stamp_;
    int error_ = 0;
};

}  // namespace linux
