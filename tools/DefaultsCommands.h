// "typeslatectl defaults": preference domains from the shell.
#pragma once

#include <CLI/CLI.hpp>

namespace tools {

void addDefaultsCommands(CLI::App& app);

}  // namespace tools
