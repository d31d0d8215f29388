// "typeslatectl helper": the helper agent from the shell.
#pragma once

#include <CLI/CLI.hpp>

namespace tools {

void addHelperCommands(CLI::App& app);

}  // namespace tools
