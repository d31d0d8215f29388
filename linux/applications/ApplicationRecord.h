// What is known of one application, and how it is started.
#pragma once

#include "linux/applications/ApplicationEnvironment.h"
#include "platform/PlatformTypes.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace linux {

struct StartDescription {
    std::vector<std::string> words;  // the program and its arguments
    std::string name;                // safe to show, never empty
    std::string iconName;            // a theme's icon name or the absolute path of a picture; empty: none
    std::string workingFolder;       // empty: none in particular
    bool isInTerminal = false;
};

// No words: nothing says how it is started, or what says so is malformed.
struct ApplicationRecord : StartDescription {
    std::string path;         // of the desktop file or the .app folder
    std::string identifier;   // empty: none
    std::string searchName;   // a desktop entry's untranslated name, an .app's folder name with ".app"
    std::string genericName;  // what it is, safe to show; empty: not told
    std::string searchTexts;  // its names and keywords in the user's language and in English, in lines; not for show
    std::string windowClass;  // of its windows, where that is another than the identifier; empty: not told
    platform::FourCharCode creator = platform::kUnknownCreator;

    std::string program;     // the word that names it, behind "env"; of an .app the absolute path of its executable
    std::string tryProgram;  // a program that must be there for the application to count as installed; empty: none
    std::size_t argumentCount = 0;

    bool isBundle = false;
    bool isApplication = false;  // not of another type, not hidden
    bool isDisplayed = false;    // neither NoDisplay nor for other desktops only
    bool isDBusActivatable = false;
};

// The record of a desktop file or .app folder read from the disk; `error` tells why there is none and stays 0 when the
// item is there but describes no application. A desktop file's identifier is its name without ".desktop". A folder
// without that suffix, a FIFO or a device is never opened.
std::optional<ApplicationRecord> readApplicationRecord(const std::string& path,
                                                       const ApplicationEnvironment& environment, int& error);

// How to start what lies at an absolute path: a desktop file, an .app folder with an executable, or any other
// executable file. Nothing for all else.
std::optional<StartDescription> startDescription(std::string_view path, const ApplicationEnvironment& environment);

// Nothing when the bytes are no property list with a dictionary.
std::optional<ApplicationRecord> bundleRecord(const std::string& path, std::string_view infoPropertyList);

// The last component of a path, safe to show and never empty.
std::string displayedLastComponent(std::string_view path);

}  // namespace linux
