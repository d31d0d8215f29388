// Files and folders on Linux.
//
// The environment is read at every call, so that a test can move the folders: HOME, XDG_DATA_HOME, WINEPREFIX, and
// TYPESLATE_ROOT, a folder that is put in front of every absolute path not below the home folder and not given by an
// XDG variable.
#pragma once

#include "platform/FileServices.h"

namespace linux {

class LinuxFiles final : public platform::FileServices {
public:
    bool fileExists(std::string_view path) override;
    std::string expandTilde(std::string_view path) override;
    std::optional<std::string> folder(platform::FolderDomain domain, platform::FolderKind kind) override;
    using FileServices::openFolder;
    using FileServices::readFile;
    std::unique_ptr<platform::FolderIterator> openFolder(std::string_view path, platform::FolderDetail detail,
                                                         platform::OSStatus& status,
                                                         const platform::ItemFilter& isWanted) override;
    std::shared_ptr<const std::string> readFile(std::string_view path, std::size_t most,
                                                platform::OSStatus& status) override;
};

}  // namespace linux
