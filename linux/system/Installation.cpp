#include "linux/system/Installation.h"

#include <cstdlib>
#include <filesystem>

namespace linux {

namespace fs = std::filesystem;

std::string installedPath(std::string_view name) {
    std::error_code error;
    const fs::path programs = fs::read_symlink("/proc/self/exe", error).parent_path();
    const fs::path installed = (programs / TYPESLATE_FROM_PROGRAMS / name).lexically_normal();
    const fs::path built = programs.parent_path() / name;
    return fs::exists(installed, error) || !fs::exists(built, error) ? installed : built;
}

std::string paneBundlePath() {
    const char* wish = std::getenv("TYPESLATE_PREFPANE");
    return wish && *wish ? wish : installedPath("Typeslate.prefPane");
}

}  // namespace linux
