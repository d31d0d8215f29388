// Where applications and programs are looked for, and in which language and desktop they are shown.
#pragma once

#include "linux/applications/DesktopEntry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace linux {

// Folders are absolute, without a final slash, those that come first win; they need not exist.
struct ApplicationEnvironment {
    std::vector<std::string> desktopEntryFolders;
    std::vector<std::string> bundleFolders;
    std::vector<std::string> programFolders;  // PATH
    std::string testRoot;                     // TYPESLATE_ROOT, or empty
    DesktopEntryLocale locale;
    std::vector<std::string> currentDesktops;  // XDG_CURRENT_DESKTOP

    // From HOME, XDG_DATA_HOME, XDG_DATA_DIRS, PATH, LC_ALL, LC_MESSAGES, LANG, XDG_CURRENT_DESKTOP and TYPESLATE_ROOT.
    // Relative folders in them are left out.
    static ApplicationEnvironment current();

    // The identifier of a desktop file by its place below one of the folders: "kde-foo" for kde/foo.desktop. Nothing
    // for a file elsewhere.
    std::optional<std::string> desktopEntryIdentifier(std::string_view path) const;
};

inline constexpr std::string_view kDesktopEntrySuffix = ".desktop";
inline constexpr std::string_view kBundleSuffix = ".app";

}  // namespace linux
