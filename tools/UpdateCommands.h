// "typeslatectl update": the schedule of update checks.
//
// "check" ends with status 0 when an updater was launched and with kNothingDue when no check was due.
#pragma once

#include <CLI/CLI.hpp>

namespace tools {

inline constexpr int kNothingDue = 3;

void addUpdateCommands(CLI::App& app);

}  // namespace tools
