// "typeslatectl entries": the entry list from the shell.
#pragma once

#include <CLI/CLI.hpp>

namespace tools {

void addEntriesCommands(CLI::App& app);

}  // namespace tools
