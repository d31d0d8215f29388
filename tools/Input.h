// Files that a command is given to read or write, "-" for the standard streams.
#pragma once

#include <cstddef>
#include <string>

namespace tools {

inline constexpr const char* kStandardStream = "-";

// What a file or standard input holds. Throws Refusal when it cannot be read, or holds more bytes than that.
std::string readInput(const std::string& name, std::size_t most = static_cast<std::size_t>(-1));

// Also by a path: /dev/stdout, for which a file that it was sent to must not be replaced.
bool isStandardOutput(const std::string& name);

}  // namespace tools
