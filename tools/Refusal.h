// How a subcommand says no.
#pragma once

#include <string>
#include <utility>

namespace tools {

// Thrown by a subcommand, caught in main: one line on standard error, exit status 1.
struct Refusal {
    std::string text;
};

}  // namespace tools
