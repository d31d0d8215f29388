// Lock files and the start of programs on Linux.
#pragma once

#include "platform/Launcher.h"

namespace platform::posix {

// Stateless: any number may exist, on any thread.
class LinuxLauncher final : public Launcher {
public:
    OSStatus makeFolder(std::string_view path) override;
    std::unique_ptr<CreatedFile> createFile(std::string_view path, OSStatus& status) override;
    OSStatus launchApplication(std::string_view bundlePath, std::string_view argument) override;
};

}  // namespace platform::posix
