#include "linux/files/WholeFile.h"

#include "linux/files/FileSteps.h"
#include "linux/files/Paths.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <new>

namespace linux {
namespace {

// Fewer and larger pages make half of the time that a large file takes. A hint, which the system may ignore.
void preferLargePages(std::string& text) {
    constexpr std::size_t kWorthwhile = std::size_t{4} << 20;
    if (text.capacity() < kWorthwhile) return;
    auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    std::uintptr_t beforeFirstPage = -reinterpret_cast<std::uintptr_t>(text.data()) & (page - 1);
    ::madvise(text.data() + beforeFirstPage, (text.capacity() - beforeFirstPage) & ~(page - 1), MADV_HUGEPAGE);
}

// The size that the system states is only a guess: the file may grow or shrink while it is read. It comes through a
// small buffer, because a string can only grow by bytes that are there: zeros first would touch the memory twice.
Failure readToTheEnd(FileAccess& files, const Descriptor& file, std::size_t stated, std::size_t limit,
                     std::string& bytes) {
    char buffer[1 << 16];
    bytes.clear();
    bytes.reserve(stated);
    preferLargePages(bytes);
    for (;;) {
        ssize_t got = files.read(file.number(), buffer, sizeof buffer);
        if (got == 0) return {};
        if (got < 0) return {"read", static_cast<int>(-got)};
        if (bytes.size() + static_cast<std::size_t>(got) > limit) return {"read", EFBIG};
        bytes.append(buffer, static_cast<std::size_t>(got));
    }
}

Failure replaceBy(FileAccess& files, const std::string& path, int folder, const std::string& temporary,
                  std::string_view bytes, mode_t newFileMode) {
    Descriptor file;
    if (Failure failure = makeTemporary(files, folder, temporary, newFileMode, file)) return failure;
    if (Failure failure = takeOverOwnerAndMode(files, folder, path, file.number())) return failure;
    if (Failure failure = writeAndFlush(files, file.number(), bytes)) return failure;
    int error = files.rename(folder, temporary.c_str(), std::string(nameOf(path)).c_str());
    return error < 0 ? Failure{"rename", -error} : Failure{};
}

}  // namespace

Descriptor openForReading(FileAccess& files, int folder, const char* path) {
    return {files, files.open(folder, path, O_RDONLY | O_NONBLOCK | O_NOCTTY)};
}

Failure readWhole(FileAccess& files, const Descriptor& file, std::size_t limit, std::string& bytes,
                  FileIdentity& identity) {
    struct stat status;
    if (int error = files.statDescriptor(file.number(), status); error < 0) return {"look at", -error};
    if (S_ISDIR(status.st_mode)) return {"read", EISDIR};
    if (!S_ISREG(status.st_mode)) return {"read", 0, "not a regular file"};
    identity = FileIdentity(status);
    auto stated = static_cast<std::size_t>(status.st_size);
    if (stated > limit) return {"read", EFBIG};
    try {
        return readToTheEnd(files, file, stated, limit, bytes);
    } catch (const std::bad_alloc&) {
        return {"read", ENOMEM};
    }
}

Failure readDescription(FileAccess& files, int folder, const char* path, std::string& bytes) {
    Descriptor file = openForReading(files, folder, path);
    if (!file) return {"open", file.error()};
    FileIdentity identity;
    return readWhole(files, file, kLargestDescription, bytes, identity);
}

Failure writeWhole(FileAccess& files, std::string path, std::string_view bytes, mode_t newFileMode) {
    struct stat status;
    Descriptor old(files, files.open(AT_FDCWD, path.c_str(), O_WRONLY | O_NOCTTY));
    if (!old && old.error() != ENOENT) return {"open", old.error()};
    if (old && files.statDescriptor(old.number(), status) == 0 && !S_ISREG(status.st_mode))
        return writeAll(files, old.number(), bytes);
    if (Failure failure = resolveLinks(files, path)) return failure;
    Descriptor folder;
    if (Failure failure = openFolder(files, std::string(folderOf(path)), false, folder)) return failure;
    const std::string temporary = ".typeslate-" + std::to_string(::getpid()) + ".tmp";
    if (Failure failure = replaceBy(files, path, folder.number(), temporary, bytes, newFileMode)) {
        (void)files.remove(folder.number(), temporary.c_str());
        return failure;
    }
    int error = files.flush(folder.number());
    return error < 0 ? Failure{"flush folder", -error} : Failure{};
}

}  // namespace linux
