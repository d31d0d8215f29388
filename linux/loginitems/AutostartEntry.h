// The desktop entry by which a session starts a login item, in the folder "autostart" of freedesktop.org's autostart
// rules.
#pragma once

#include "linux/applications/ApplicationRecord.h"

#include <optional>
#include <string>
#include <string_view>

namespace linux {

// The text as the value of a desktop entry's key that a reader turns back into it.
std::string escapedDesktopEntryValue(std::string_view text);

// The path of a login item that the file stands for, as the key "X-Typeslate-LoginItem" names it, escapes and all:
// for comparing with autostartPathValue() only. Nothing for a file of others.
std::optional<std::string_view> autostartPathValue(std::string_view entry);

// The whole file. A hidden item starts without the feedback of a starting application; no desktop has a key by which a
// program's own windows would stay away.
std::string autostartEntry(std::string_view itemPath, bool hide, const StartDescription& start);

// Whether a file has every line of the other: it may have more, as desktops write them when the user switches an entry
// off.
bool hasLinesOf(std::string_view file, std::string_view other);

// "login-item-Editor.desktop" for .../Editor.app; from the second on, a number behind it.
std::string autostartFileName(std::string_view itemPath, int number);
bool isAutostartFileName(std::string_view name);

}  // namespace linux
