// The reader of desktop entries: files that tell how a program is started and shown.
//
// The format is that of freedesktop.org's desktop-entry rules, version 1.5. Only the keys that decide whether an
// application is there, what it is called and how it starts are kept.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace linux {

// Limits that no honest file comes near: a longer file is malformed, a longer value is as good as missing.
inline constexpr std::size_t kMaximumDesktopEntrySize = 1 << 20;
inline constexpr std::size_t kMaximumDesktopEntryValue = 4096;

// The postfixes of translated keys that suit a locale, the best first: "sr_YU@Latn" gives sr_YU@Latn, sr_YU, sr@Latn,
// sr. Empty for "C" and "POSIX".
using DesktopEntryLocale = std::vector<std::string>;
DesktopEntryLocale desktopEntryLocale(std::string_view posixLocale);

struct DesktopEntry {
    bool isApplication = false;
    bool isHidden = false;  // stands for "deleted": the entry counts as not there
    bool isNoDisplay = false;
    bool isDBusActivatable = false;
    bool isTerminal = false;
    // Valid UTF-8 without U+0000, otherwise as the file has them: not safe to show without displayText().
    std::string name;             // in the locale
    std::string unlocalizedName;  // never translated
    std::string icon;             // a theme's icon name or an absolute path
    std::string tryExec;
    std::string exec;           // see splitCommand()
    std::string workingFolder;  // empty: none
    std::vector<std::string> onlyShowIn, notShowIn;

    // Whether menus of these desktops (the parts of XDG_CURRENT_DESKTOP) show the entry.
    bool isShownIn(const std::vector<std::string>& desktops) const;
};

// Nothing when the bytes are no desktop entry: the main group does not come first or holds a line that is neither a
// comment nor a key with a value, or there is no type or (for an application) no name. A hidden entry needs neither.
std::optional<DesktopEntry> readDesktopEntry(std::string_view bytes, const DesktopEntryLocale& locale);

// The text as a value that a reader turns back into it.
std::string escapedDesktopEntryValue(std::string_view text);

}  // namespace linux
