// How an application is started.
#pragma once

#include "linux/applications/ApplicationEnvironment.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace linux {

struct StartDescription {
    std::vector<std::string> words;  // the program and its arguments; never empty
    std::string name;                // safe to show
    std::string iconName;            // a theme's icon name or an absolute path; empty: none
    std::string workingFolder;       // empty: none in particular
    bool isInTerminal = false;
};

// How to start what lies at an absolute path: a desktop file, an .app folder with an executable, or any other
// executable file. Nothing for all else.
std::optional<StartDescription> startDescription(std::string_view path, const ApplicationEnvironment& environment);

}  // namespace linux
