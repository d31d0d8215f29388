#include "linux/files/LinuxFiles.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

namespace linux {

using namespace platform;

namespace {

bool isUsable(std::string_view path) { return !path.empty() && path.find('\0') == std::string_view::npos; }

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string withoutFinalSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

std::string homeFolder() {
    if (std::string home = environment("HOME"); home.starts_with('/')) return withoutFinalSlashes(std::move(home));
    const passwd* user = ::getpwuid(::getuid());
    return user && user->pw_dir && *user->pw_dir ? withoutFinalSlashes(user->pw_dir) : "/";
}

std::string joined(std::string_view folder, std::string_view rest) {
    std::string path(folder);
    if (path.empty() || path.back() != '/') path += '/';
    return path.append(rest);
}

bool isBelow(std::string_view path, std::string_view folder) {
    if (folder == "/") return true;
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string belowTestRoot(std::string path) {
    const std::string root = withoutFinalSlashes(environment("TYPESLATE_ROOT"));
    if (!root.starts_with('/') || root == "/") return path;
    if (const std::string home = homeFolder(); home != "/" && isBelow(path, home)) return path;
    return isBelow(path, root) ? path : root + path;
}

std::optional<std::string> libraryFolder(FolderDomain domain) {
    switch (domain) {
        case FolderDomain::User:
            return joined(homeFolder(), "Library");
        case FolderDomain::Local:
            return belowTestRoot("/Library");
        case FolderDomain::Network:
            return belowTestRoot("/Network/Library");
        default:
            return std::nullopt;
    }
}

std::string userDataFolder() {
    // The base-directory rules have a relative path ignored.
    if (std::string data = environment("XDG_DATA_HOME"); data.starts_with('/'))
        return withoutFinalSlashes(std::move(data));
    return joined(homeFolder(), ".local/share");
}

std::string winePrefix() {
    if (std::string prefix = environment("WINEPREFIX"); prefix.starts_with('/'))
        return belowTestRoot(withoutFinalSlashes(std::move(prefix)));
    return joined(homeFolder(), ".wine");
}

std::optional<std::string> applicationSupportFolder(FolderDomain domain) {
    switch (domain) {
        case FolderDomain::User:
            return userDataFolder();
        case FolderDomain::Local:
            return belowTestRoot("/usr/local/share");
        case FolderDomain::Network:
            return belowTestRoot("/usr/share");
        case FolderDomain::Classic:
            return joined(winePrefix(), "drive_c/Program Files/Common Files");
        default:
            return std::nullopt;
    }
}

struct Descriptor {
    explicit Descriptor(int opened) : number(opened) {}
    Descriptor(const Descriptor&) = delete;
    ~Descriptor() {
        if (number >= 0) ::close(number);
    }
    const int number;
};

ssize_t readSome(int file, char* buffer, std::size_t size) {
    ssize_t got;
    do got = ::read(file, buffer, size);
    while (got < 0 && errno == EINTR);
    return got;
}

// Fewer and larger pages make half of the time that a large file takes. A hint, which the system may ignore.
void preferLargePages(std::string& text) {
    constexpr std::size_t kWorthwhile = std::size_t{4} << 20;
    if (text.capacity() < kWorthwhile) return;
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto beforeFirstPage = -reinterpret_cast<std::uintptr_t>(text.data()) & (page - 1);
    ::madvise(text.data() + beforeFirstPage, (text.capacity() - beforeFirstPage) & ~(page - 1), MADV_HUGEPAGE);
}

// The size that the system states is only a guess: the file may grow or shrink while it is read. It comes through a
// small buffer, because a string can only grow by bytes that are there: zeros first would touch the memory twice.
bool readAll(int file, std::size_t stated, std::string& bytes) {
    char buffer[1 << 17];
    bytes.reserve(stated);
    preferLargePages(bytes);
    while (const ssize_t got = readSome(file, buffer, sizeof buffer)) {
        if (got < 0 || bytes.size() + static_cast<std::size_t>(got) > FileServices::kLargestFile) return false;
        bytes.append(buffer, static_cast<std::size_t>(got));
    }
    return true;
}

}  // namespace

bool LinuxFiles::fileExists(std::string_view path) {
    struct stat status;
    return isUsable(path) && ::stat(std::string(path).c_str(), &status) == 0;
}

std::string LinuxFiles::expandTilde(std::string_view path) {
    if (path == "~") return homeFolder();
    return path.starts_with("~/") ? joined(homeFolder(), path.substr(2)) : std::string(path);
}

std::optional<std::string> LinuxFiles::folder(FolderDomain domain, FolderKind kind) {
    switch (kind) {
        case FolderKind::Library:
            return libraryFolder(domain);
        case FolderKind::ApplicationSupport:
            return applicationSupportFolder(domain);
        case FolderKind::Temporary:
            break;
    }
    if (domain != FolderDomain::System) return std::nullopt;
    return belowTestRoot("/tmp");
}

std::shared_ptr<const std::string> LinuxFiles::readFile(std::string_view path) {
    if (!isUsable(path)) return nullptr;
    const std::string name(path);
    struct stat status;
    if (::stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
    // Between the look and the opening the name may have become a FIFO, which would block.
    const Descriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (file.number < 0 || ::fstat(file.number, &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
    if (static_cast<std::uint64_t>(status.st_size) > kLargestFile) return nullptr;
    try {
        auto bytes = std::make_shared<std::string>();
        if (readAll(file.number, static_cast<std::size_t>(status.st_size), *bytes)) return bytes;
    } catch (const std::bad_alloc&) {
    }
    return nullptr;
}

}  // namespace linux
