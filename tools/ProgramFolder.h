// Where the parts of the program lie.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

namespace tools {

// The path of something beside the folder that holds the program: "../name", links resolved.
inline std::string besideProgramFolder(std::string_view name) {
    std::error_code error;
    auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path().parent_path() / name).string();
}

// The pane's bundle: the one that TYPESLATE_PREFPANE names, else the program's own.
inline std::string paneBundlePath() {
    const char* wish = std::getenv("TYPESLATE_PREFPANE");
    return wish && *wish ? wish : besideProgramFolder("Typeslate.prefPane");
}

}  // namespace tools
