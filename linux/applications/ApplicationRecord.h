// What is known of one application.
#pragma once

#include "linux/applications/ApplicationEnvironment.h"
#include "linux/files/SmallFile.h"
#include "platform/PlatformTypes.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace linux {

struct ApplicationRecord {
    std::string path;        // of the desktop file or the .app folder
    std::string identifier;  // empty: none
    std::string name;        // safe to show, never empty
    std::string searchName;  // a desktop entry's untranslated name, an .app's folder name with ".app"
    std::string iconName;    // a theme's icon name or the absolute path of a picture; empty: none
    platform::FourCharCode creator = platform::kUnknownCreator;

    std::string program;     // as the command names it, behind "env"; of an .app the absolute path of its executable
    std::string tryProgram;  // a program that must be there for the application to count as installed; empty: none
    std::size_t argumentCount = 0;

    bool isBundle = false;
    bool isApplication = false;  // not of another type, not hidden
    bool isDisplayed = false;    // neither NoDisplay nor for other desktops only
    bool isDBusActivatable = false;
};

// Nothing when the bytes are malformed. An entry that is hidden or of another type is a record too: it stands in the
// way of entries with the same identifier in later folders.
std::optional<ApplicationRecord> desktopEntryRecord(std::string path, std::string identifier, std::string_view bytes,
                                                    const ApplicationEnvironment& environment);
// Nothing when the bytes are no property list with a dictionary.
std::optional<ApplicationRecord> bundleRecord(std::string path, std::string_view infoPropertyList);

// The record of a desktop file or .app folder read from the disk; `error` tells why there is none and stays 0 when the
// item is there but describes no application. A desktop file's identifier is its name without ".desktop".
std::optional<ApplicationRecord> readApplicationRecord(const std::string& path,
                                                       const ApplicationEnvironment& environment, int& error);

// The last component of a path, safe to show and never empty.
std::string displayedLastComponent(std::string_view path);

}  // namespace linux
