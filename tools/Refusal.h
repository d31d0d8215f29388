// How a subcommand says no.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tools {

inline constexpr int kRefused = 1;
// The list of entries is not the one whose token was given.
inline constexpr int kListHasChanged = 4;

// Thrown by a subcommand, caught in main: each line goes to standard error.
struct Refusal {
    explicit Refusal(std::string line, int exitStatus = kRefused) : lines{std::move(line)}, status(exitStatus) {}
    explicit Refusal(std::vector<std::string> several) : lines(std::move(several)) {}
    std::vector<std::string> lines;
    int status = kRefused;
};

}  // namespace tools
