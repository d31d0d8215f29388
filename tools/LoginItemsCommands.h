// "typeslatectl login-items": the login items from the shell.
#pragma once

#include <CLI/CLI.hpp>

namespace tools {

void addLoginItemsCommands(CLI::App& app);

}  // namespace tools
