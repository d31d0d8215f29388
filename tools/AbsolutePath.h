// Paths as the shell's user gives them.
#pragma once

#include <filesystem>
#include <string>

namespace tools {

// Without "." and "..", and without slashes at the end; links stay.
inline std::string absolutePath(const std::string& path) {
    std::error_code error;
    std::string absolute = std::filesystem::absolute(path, error).lexically_normal();
    while (absolute.size() > 1 && absolute.ends_with('/')) absolute.pop_back();
    return absolute;
}

}  // namespace tools
