// "typeslatectl catalog": the catalogue of font names from the shell.
#pragma once

#include <CLI/CLI.hpp>

namespace tools {

void addCatalogCommands(CLI::App& app);

}  // namespace tools
