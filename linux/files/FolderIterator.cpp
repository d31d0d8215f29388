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
        if (folder_ >= 0) ::close(folder_);
    }

    // 0, or the error number.
    int open(const std::string& path, const ItemFilter& isWanted) {
        folder_ = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        struct stat status;
        if (folder_ < 0 || ::fstat(folder_, &status) != 0) return errno;
        identity_ = {status.st_dev, status.st_ino};
        return readItems(isWanted);
    }

    ItemIdentity identity() const override { return identity_; }

    void nextBatch(std::size_t most, std::vector<FolderEntry>& entries) override {
        entries.clear();
        for (; next_ < items_.size() && entries.size() < most; ++next_) append(items_[next_], entries);
    }

private:
    // Without readdir(3), which takes twice the time for a folder of few items: there may be many thousands of them.
    int readItems(const ItemFilter& isWanted) {
        alignas(dirent64) char buffer[1 << 15];
        FolderEntry entry;
        ssize_t size;
        while ((size = ::getdents64(folder_, buffer, sizeof buffer)) > 0)
            for (ssize_t at = 0; at < size;) {
                const auto* item = reinterpret_cast<const dirent64*>(buffer + at);
                at += item->d_reclen;
                entry.name = item->d_name;
                if (entry.name == "." || entry.name == "..") continue;
                entry.isInvisible = entry.name.starts_with('.');
                entry.kind = kindOfType(item->d_type);
                if (!isWanted || isWanted(entry)) items_.push_back({entry.name, item->d_type});
            }
        if (size < 0) return errno;
        std::sort(items_.begin(), items_.end(), [](const Item& a, const Item& b) { return a.name < b.name; });
        return 0;
    }

    void append(Item& item, std::vector<FolderEntry>& entries) {
        FolderEntry entry;
        entry.isInvisible = item.name.starts_with('.');
        entry.kind = kindOfType(item.type);
        if (detail_ == FolderDetail::Everything && !describe(item, entry)) return;
        entry.name = std::move(item.name);
        entries.push_back(std::move(entry));
    }

    // False when the item has vanished.
    bool describe(const Item& item, FolderEntry& entry) const {
        struct stat status;
        const auto ask = [&](int flags) { return ::fstatat(folder_, item.name.c_str(), &status, flags) == 0; };
        entry.kind = ItemKind::Unresolved;
        // Not every file system tells the type with the name.
        entry.isLink =
            item.type == DT_LNK || (item.type == DT_UNKNOWN && ask(AT_SYMLINK_NOFOLLOW) && S_ISLNK(status.st_mode));
        if (!ask(0)) return ask(AT_SYMLINK_NOFOLLOW) || errno != ENOENT;
        entry.kind = kindOfMode(status.st_mode);
        entry.modified = dateOf(status.st_mtim);
        entry.identity = {status.st_dev, status.st_ino};
        return true;
    }

    const FolderDetail detail_;
    int folder_ = -1;
    ItemIdentity identity_;
    std::vector<Item> items_;
    std::size_t next_ = 0;
};

}  // namespace

std::unique_ptr<FolderIterator> LinuxFiles::openFolder(std::string_view path, FolderDetail detail, OSStatus& status,
                                                       const ItemFilter& isWanted) {
    auto iterator = std::make_unique<LinuxFolderIterator>(detail);
    int error = isUsablePath(path) ? iterator->open(std::string(path), isWanted) : ENOENT;
    status = statusOfErrno(error);
    return error ? nullptr : std::move(iterator);
}

}  // namespace linux
