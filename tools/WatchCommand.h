// "typeslatectl watch": prints what the settings pane announces.
#pragma once

#include <CLI/CLI.hpp>

namespace tools {

void addWatchCommand(CLI::App& app);

}  // namespace tools
