// How a subcommand says no.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tools {

// Thrown by a subcommand, caught in main: each line goes to standard error, the exit status is 1.
struct Refusal {
    explicit Refusal(std::string line) : lines{std::move(line)} {}
    explicit Refusal(std::vector<std::string> several) : lines(std::move(several)) {}
    std::vector<std::string> lines;
};

}  // namespace tools
