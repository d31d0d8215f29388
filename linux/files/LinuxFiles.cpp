#include "linux/files/LinuxFiles.h"

#include "linux/files/ErrnoStatus.h"
#include "linux/files/Paths.h"
#include "linux/files/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

namespace linux {

using namespace platform;

namespace {

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

std::string winePrefix() {
    std::string prefix = absolutePathIn("WINEPREFIX");
    return prefix.empty() ? joined(homeFolder(), ".wine") : belowTestRoot(prefix);
}

// In a prefix for 64 bits, programs of 32 have folders of their own. The one with something of Adobe's is taken.
std::string wineCommonFiles() {
    const std::string folder = joined(winePrefix(), "drive_c/Program Files"), common = "/Common Files";
    for (const std::string& each : {folder + common, folder + " (x86)" + common})
        if (struct stat status; ::stat((each + "/Adobe").c_str(), &status) == 0) return each;
    return folder + common;
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
            return wineCommonFiles();
        default:
            return std::nullopt;
    }
}

}  // namespace

bool LinuxFiles::fileExists(std::string_view path) {
    struct stat status;
    return isUsablePath(path) && ::stat(std::string(path).c_str(), &status) == 0;
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

std::shared_ptr<const std::string> LinuxFiles::readFile(std::string_view path, std::size_t most, OSStatus& status) {
    std::string name(path);
    struct stat file;
    status = isUsablePath(path) ? kNoErr : kFileNotFound;
    if (!status && ::stat(name.c_str(), &file) != 0) status = statusOfErrno(errno);
    // A device may do something when it is opened.
    if (!status && !S_ISREG(file.st_mode)) status = kNotAFile;
    if (status) return nullptr;
    FileAccess& files = FileAccess::system();
    Descriptor descriptor = openForReading(files, AT_FDCWD, name.c_str());
    auto bytes = std::make_shared<std::string>();
    FileIdentity identity;
    Failure failure = descriptor ? readWhole(files, descriptor, std::min(most, kLargestFile), *bytes, identity)
                                 : Failure{"open", descriptor.error()};
    if (!failure) return bytes;
    status = failure.error ? statusOfErrno(failure.error) : kNotAFile;
    return nullptr;
}

}  // namespace linux
