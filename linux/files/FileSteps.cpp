#include "linux/files/FileSteps.h"

#include "linux/files/Paths.h"

#include <unistd.h>

#include <cerrno>
#include <climits>

namespace linux {

namespace {

constexpr mode_t kFolderMode = 0700;

Descriptor open(FileAccess& files, std::string_view path) {
    return {files, files.open(AT_FDCWD, std::string(path).c_str(), O_RDONLY | O_DIRECTORY)};
}

int settleNewFolder(FileAccess& files, const std::string& path) {
    Descriptor parent = open(files, folderOf(path));
    if (!parent) return parent.error();
    Descriptor folder = open(files, path);
    if (!folder) return folder.error();
    giveToOwnerOf(files, parent.number(), folder.number());
    return -files.flush(parent.number());
}

Failure makeFolder(FileAccess& files, const std::string& path) {
    if (int error = files.makeFolder(path.c_str(), kFolderMode); error < 0)
        return error == -EEXIST ? Failure{} : Failure{"make folder", -error};
    int error = settleNewFolder(files, path);
    if (!error) return {};
    (void)files.remove(AT_FDCWD, path.c_str(), AT_REMOVEDIR);
    return {"make folder", error};
}

Failure makeFolders(FileAccess& files, const std::string& path) {
    struct stat status;
    int error = files.stat(path.c_str(), status);
    if (error == 0) return {};
    std::string parent(folderOf(path));
    if (error != -ENOENT || parent == path) return {"look for folder", -error};
    if (Failure failure = makeFolders(files, parent)) return failure;
    return makeFolder(files, path);
}

}  // namespace

Failure resolveLinks(FileAccess& files, std::string& path) {
    constexpr int kMostLinks = 40;
    char target[PATH_MAX];
    for (int links = 0; links < kMostLinks; ++links) {
        ssize_t length = files.readLink(path.c_str(), target, sizeof target);
        if (length == -EINVAL || length == -ENOENT) return {};
        if (length < 0) return {"follow link", static_cast<int>(-length)};
        if (length == sizeof target) return {"follow link", ENAMETOOLONG};
        std::string_view text(target, static_cast<std::size_t>(length));
        path = text.starts_with('/') ? std::string(text) : std::string(folderOf(path)).append("/").append(text);
    }
    return {"follow link", ELOOP};
}

Failure openFolder(FileAccess& files, const std::string& path, bool make, Descriptor& folder) {
    folder = open(files, path);
    if (folder.error() == ENOENT && make) {
        if (Failure failure = makeFolders(files, path)) return failure;
        folder = open(files, path);
    }
    return folder ? Failure{} : Failure{"open folder", folder.error()};
}

void giveToOwnerOf(FileAccess& files, int folder, int file) {
    struct stat model, own;
    if (geteuid() != 0 || files.statDescriptor(folder, model) < 0 || files.statDescriptor(file, own) < 0) return;
    bool hasOtherNames = S_ISREG(own.st_mode) && own.st_nlink > 1;
    if (model.st_uid != own.st_uid && !hasOtherNames) (void)files.changeOwner(file, model.st_uid, model.st_gid);
}

Failure takeOverOwnerAndMode(FileAccess& files, int folder, const std::string& path, int file) {
    struct stat old = {}, own = {};
    int error = files.stat(path.c_str(), old);
    if (error == -ENOENT) {
        giveToOwnerOf(files, folder, file);
        return {};
    }
    if (error == 0) error = files.statDescriptor(file, own);
    if (error < 0) return {"look at", -error};
    // Whoever may not give the file away keeps it, if possible in its group.
    if ((old.st_uid != own.st_uid || old.st_gid != own.st_gid) && files.changeOwner(file, old.st_uid, old.st_gid) < 0)
        (void)files.changeOwner(file, static_cast<uid_t>(-1), old.st_gid);
    mode_t mode = old.st_mode & 0777;
    error = mode == (own.st_mode & 0777) ? 0 : files.changeMode(file, mode);
    return error < 0 ? Failure{"set the mode of the new file", -error} : Failure{};
}

Failure makeTemporary(FileAccess& files, int folder, const std::string& name, mode_t mode, Descriptor& file) {
    int error = files.remove(folder, name.c_str());
    if (error < 0 && error != -ENOENT) return {"remove old temporary file", -error};
    file = Descriptor(files, files.open(folder, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, mode));
    return file ? Failure{} : Failure{"create temporary file", file.error()};
}

Failure writeAll(FileAccess& files, int file, std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t count = files.write(file, bytes.data(), bytes.size());
        if (count < 0) return {"write", static_cast<int>(-count)};
        if (count == 0) return {"write", ENOSPC};
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

Failure writeAndFlush(FileAccess& files, int file, std::string_view bytes) {
    if (Failure failure = writeAll(files, file, bytes)) return failure;
    int error = files.flush(file);
    return error < 0 ? Failure{"flush", -error} : Failure{};
}

int renameUnlessTaken(FileAccess& files, int folder, const char* from, const char* to) {
    int error = files.renameExclusive(folder, from, to);
    if (error != -EINVAL && error != -ENOSYS) return error;
    error = files.link(folder, from, to);
    return error < 0 ? error : files.remove(folder, from);
}

}  // namespace linux
