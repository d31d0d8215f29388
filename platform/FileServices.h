// Files and well-known folders, as far as the pane asks for them.
//
// Paths are bytes, as the system has them. One that is empty or holds U+0000 names nothing.
#pragma once

#include "platform/PlatformTypes.h"

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
};

enum class FolderDetail {
    Names,      // name and isInvisible, and the kind where the folder itself holds it; links are Unresolved
    Everything  // every field; links are followed
};

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
    // A larger file is not read into memory.
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
    virtual std::unique_ptr<FolderIterator> openFolder(std::string_view path, FolderDetail detail,
                                                       OSStatus& status) = 0;
    // The whole content of a regular file, links followed; null when there is none at the path, when it cannot be read
    // or is larger than kLargestFile. Nothing but a regular file is opened.
    virtual std::shared_ptr<const std::string> readFile(std::string_view path) = 0;
};

}  // namespace platform
