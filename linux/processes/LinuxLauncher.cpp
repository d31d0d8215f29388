#include "linux/processes/LinuxLauncher.h"

#include "linux/files/ErrnoStatus.h"
#include "linux/processes/DetachedProcess.h"
#include "linux/system/FolderBundle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace linux {

using namespace platform;

namespace {

bool isUsable(std::string_view path) { return path.starts_with('/') && path.find('\0') == std::string_view::npos; }

class LinuxCreatedFile final : public CreatedFile {
public:
    LinuxCreatedFile(std::string path, const struct stat& created)
        : path_(std::move(path)), device_(created.st_dev), inode_(created.st_ino) {}

    OSStatus remove() override {
        struct stat present;
        if (::lstat(path_.c_str(), &present) != 0) return statusOfErrno(errno);
        if (present.st_dev != device_ || present.st_ino != inode_) return kFileNotFound;
        return ::unlink(path_.c_str()) == 0 ? kNoErr : statusOfErrno(errno);
    }

private:
    const std::string path_;
    const dev_t device_;
    const ino_t inode_;
};

}  // namespace

OSStatus LinuxLauncher::makeFolder(std::string_view path) {
    if (!isUsable(path)) return kParamErr;
    std::string name(path);
    if (::mkdir(name.c_str(), 0777) == 0) return kNoErr;
    int error = errno;
    struct stat present;
    if (::stat(name.c_str(), &present) != 0) return statusOfErrno(error);
    return S_ISDIR(present.st_mode) ? kNoErr : kNotAFolder;
}

std::unique_ptr<CreatedFile> LinuxLauncher::createFile(std::string_view path, OSStatus& status) {
    status = kParamErr;
    if (!isUsable(path)) return nullptr;
    std::string name(path);
    int file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    struct stat created = {};
    bool isKnown = file >= 0 && ::fstat(file, &created) == 0;
    status = isKnown ? kNoErr : statusOfErrno(errno);
    if (file >= 0) ::close(file);
    if (!isKnown) return nullptr;
    return std::make_unique<LinuxCreatedFile>(std::move(name), created);
}

OSStatus LinuxLauncher::launchApplication(std::string_view bundlePath, std::string_view argument) {
    if (!isUsable(bundlePath) || argument.find('\0') != std::string_view::npos) return kParamErr;
    auto bundle = FolderBundle::open(bundlePath);
    if (!bundle) return kFileNotFound;
    std::string executable(bundle->infoValue("CFBundleExecutable").stringValue());
    if (executable.empty() || executable.find('/') != std::string::npos) return kFileNotFound;
    return startDetached({bundle->path() + "/Contents/Linux/" + executable, std::string(argument)});
}

}  // namespace linux
