#include "linux/files/ErrnoStatus.h"
#include "linux/files/LinuxFiles.h"
#include "linux/files/Paths.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace linux {

using namespace platform;

namespace {

ItemKind kindOfType(unsigned char type) {
    switch (type) {
        case DT_DIR:
            return ItemKind::Folder;
        case DT_REG:
            return ItemKind::RegularFile;
        case DT_LNK:
        case DT_UNKNOWN:
            return ItemKind::Unresolved;
        default:
            return ItemKind::Other;
    }
}

ItemKind kindOfMode(mode_t mode) {
    if (S_ISDIR(mode)) return ItemKind::Folder;
    return S_ISREG(mode) ? ItemKind::RegularFile : ItemKind::Other;
}

std::optional<Date> dateOf(const timespec& time) {
    constexpr std::int64_t kLastSecond = std::numeric_limits<std::int64_t>::max() / 1'000'000 - 1;
    if (time.tv_sec > kLastSecond || time.tv_sec < -kLastSecond) return std::nullopt;
    return Date{std::int64_t{time.tv_sec} * 1'000'000 + time.tv_nsec / 1000};
}

struct Item {
    std::string name;
    unsigned char type;
};

class LinuxFolderIterator final : public FolderIterator {
public:
    explicit LinuxFolderIterator(FolderDetail detail) : detail_(detail) {}
    ~LinuxFolderIterator() override {
        if (folder_) ::closedir(folder_);
    }

    // 0, or the error number.
    int open(const std::string& path) {
        const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0) return errno;
        folder_ = ::fdopendir(descriptor);
        if (!folder_) {
            const int error = errno;
            ::close(descriptor);
            return error;
        }
        struct stat status;
        if (::fstat(descriptor, &status) != 0) return errno;
        identity_ = {status.st_dev, status.st_ino};
        return readItems();
    }

    ItemIdentity identity() const override { return identity_; }

    void nextBatch(std::size_t most, std::vector<FolderEntry>& entries) override {
        entries.clear();
        for (; next_ < items_.size() && entries.size() < most; ++next_) append(items_[next_], entries);
    }

private:
    int readItems() {
        for (;;) {
            errno = 0;
            const dirent* item = ::readdir(folder_);
            if (!item) break;
            const std::string_view name = item->d_name;
            if (name != "." && name != "..") items_.push_back({std::string(name), item->d_type});
        }
        const int error = errno;
        std::sort(items_.begin(), items_.end(), [](const Item& a, const Item& b) { return a.name < b.name; });
        return error;
    }

    void append(Item& item, std::vector<FolderEntry>& entries) {
        FolderEntry entry;
        entry.isInvisible = item.name.starts_with('.');
        entry.kind = kindOfType(item.type);
        if (detail_ == FolderDetail::Everything && !describe(item.name, entry)) return;
        entry.name = std::move(item.name);
        entries.push_back(std::move(entry));
    }

    bool describe(const std::string& name, FolderEntry& entry) const {
        struct stat status;
        const int descriptor = ::dirfd(folder_);
        entry.kind = ItemKind::Unresolved;
        if (::fstatat(descriptor, name.c_str(), &status, 0) != 0)
            return ::fstatat(descriptor, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 || errno != ENOENT;
        entry.kind = kindOfMode(status.st_mode);
        entry.modified = dateOf(status.st_mtim);
        entry.identity = {status.st_dev, status.st_ino};
        return true;
    }

    const FolderDetail detail_;
    DIR* folder_ = nullptr;
    ItemIdentity identity_;
    std::vector<Item> items_;
    std::size_t next_ = 0;
};

}  // namespace

std::unique_ptr<FolderIterator> LinuxFiles::openFolder(std::string_view path, FolderDetail detail, OSStatus& status) {
    auto iterator = std::make_unique<LinuxFolderIterator>(detail);
    int error = isUsablePath(path) ? iterator->open(std::string(path)) : ENOENT;
    status = statusOfErrno(error);
    return error ? nullptr : std::move(iterator);
}

}  // namespace linux
