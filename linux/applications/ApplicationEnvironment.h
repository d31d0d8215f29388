// Where applications and programs are looked for, and in which desktop they are shown.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace linux {

// Folders are absolute, without a final slash, those that come first win; they need not exist.
struct ApplicationEnvironment {
    std::vector<std::string> desktopEntryFolders;
    std::vector<std::string> bundleFolders;
    std::vector<std::string> programFolders;   // PATH
    std::string testRoot;                      // TYPESLATE_ROOT, or empty
    std::vector<std::string> currentDesktops;  // XDG_CURRENT_DESKTOP
    bool isTranslated = true;                  // names in the user's language (LANGUAGE, LC_ALL, LC_MESSAGES, LANG)

    // From HOME, XDG_DATA_HOME, XDG_DATA_DIRS, PATH, XDG_CURRENT_DESKTOP and TYPESLATE_ROOT as they are now. Relative
    // folders in them are left out.
    static ApplicationEnvironment current();
};

inline constexpr std::string_view kDesktopEntrySuffix = ".desktop";
inline constexpr std::string_view kBundleSuffix = ".app";

}  // namespace linux
