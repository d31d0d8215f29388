// Where the parts of the program lie.
#pragma once

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

}  // namespace tools
