// Lock files and the start of programs on Linux.
#pragma once

#include "platform/Launcher.h"

namespace linux {

// Stateless: any number may exist, on any thread.
class LinuxLauncher final : public platform::Launcher {
public:
    platform::OSStatus makeFolder(std::string_view path) override;
    std::unique_ptr<platform::CreatedFile> createFile(std::string_view path, platform::OSStatus& status) override;
    platform::OSStatus launchApplication(std::string_view bundlePath, std::string_view argument) override;
};

}  // namespace linux
