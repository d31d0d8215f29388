// Files and well-known folders, as far as the pane asks for them.
//
// Paths are bytes, as the system has them. One that is empty or holds U+0000 names nothing.
#pragma once

#include "platform/PlatformTypes.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

enum class FolderDomain { User, Local, Network, Classic, System };
enum class FolderKind { Library, ApplicationSupport, Temporary };

enum class ItemKind : std::uint8_t {
    Folder,
    RegularFile,
    Other,      // a device, FIFO, socket: never open one by its name
    Unresolved  // not known without a further question (names only), or a link that leads nowhere
};

// Tells one item from every other, whatever the path to it.
struct ItemIdentity {
    std::uint64_t device = 0, inode = 0;
    auto operator<=>(const ItemIdentity&) const = default;  // NOLINT(modernize-use-nullptr)
};

struct FolderEntry {
    std::string name;
    ItemKind kind = ItemKind::Unresolved;
    bool isInvisible = false;      // the name starts with "."
    std::optional<Date> modified;  // of the content; nothing where the file system gives no time that a Date can hold
    ItemIdentity identity;
    bool isLink = false;  // the fields above are of what it leads to
};

enum class FolderDetail {
    Names,      // name and isInvisible, and the kind where the folder itself holds it; links are Unresolved
    Everything  // every field; links are followed
};

// Whether a listing shall hold an item, by its name and its kind as Names has them. Asked once for each item, so that a
// listing of a few of a million items takes no more memory than those few.
using ItemFilter = std::function<bool(const FolderEntry&)>;

// One pass over the items of one folder, without "." and "..", in the byte order of their names whatever the file
// system's own order is. It shows the folder as it was when it was opened; items that have vanished since are left out.
class FolderIterator {
public:
    virtual ~FolderIterator() = default;
    virtual ItemIdentity identity() const = 0;  // of the folder itself
    // Replaces `entries` with at most `most` further items; none when there are no more.
    virtual void nextBatch(std::size_t most, std::vector<FolderEntry>& entries) = 0;
};

class FileServices {
public:
    // Bytes. A larger file is never read into memory.
    static constexpr std::size_t kLargestFile = std::size_t{1} << 30;

    virtual ~FileServices() = default;
    // True when anything exists at the path, links followed. A path that starts with "~" is taken as it stands.
    virtual bool fileExists(std::string_view path) = 0;
    // "~" or "~/..." with the user's home folder in place of the tilde; any other path as it is.
    virtual std::string expandTilde(std::string_view path) = 0;
    // Absolute path without a final slash, whether or not the folder exists; nothing when the domain has no such
    // folder.
    virtual std::optional<std::string> folder(FolderDomain domain, FolderKind kind) = 0;

    // Null, and the reason in `status`, when the folder cannot be read to its end: kFileNotFound, kNotAFolder,
    // kPermissionErr or kIOErr.
    virtual std::unique_ptr<FolderIterator> openFolder(std::string_view path, FolderDetail detail, OSStatus& status,
                                                       const ItemFilter& isWanted) = 0;
    std::unique_ptr<FolderIterator> openFolder(std::string_view path, FolderDetail detail, OSStatus& status) {
        return openFolder(path, detail, status, {});  // all items
    }
    // The whole content of a regular file, links followed. Null, and the reason in `status`, when there is none at the
    // path, when it cannot be read, or when it has more than `most` bytes (kFileTooLarge). Nothing but a regular file
    // is opened.
    virtual std::shared_ptr<const std::string> readFile(std::string_view path, std::size_t most, OSStatus& status) = 0;
    std::shared_ptr<const std::string> readFile(std::string_view path) {
        OSStatus status;
        return readFile(path, kLargestFile, status);
    }
};

}  // namespace platform
