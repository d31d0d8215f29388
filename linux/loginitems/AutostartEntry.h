// The desktop entry by which a session starts a login item: a file in the folder "autostart", as the autostart rules of
// freedesktop.org have it (version 0.5), in the form of their desktop entries (version 1.5).
#pragma once

#include "linux/applications/ApplicationRecord.h"

#include <optional>
#include <string>
#include <string_view>

namespace linux {

// The text as the value of a desktop entry's key that a reader turns back into it.
std::string escapedDesktopEntryValue(std::string_view text);

// The path of the login item for which an entry stands, with its escapes: equal to escapedDesktopEntryValue(path). A
// part of `entry`. Nothing for a file of others.
std::optional<std::string_view> autostartPathValue(std::string_view entry);

// The whole file. `start` names at least a program. What some sessions would start wrongly is started through awk. A
// hidden item starts without the busy pointer of a starting application; no desktop has a key by which a program's own
// windows would stay away.
std::string autostartEntry(std::string_view itemPath, bool hide, const StartDescription& start);

// Whether a file has every line of the other: it may have more, as desktops write them when the user switches an entry
// off.
bool hasLinesOf(std::string_view file, std::string_view other);

// Those lines of an entry, whole, by which a desktop's own settings say whether, where and when to start it.
std::string linesOfTheDesktop(std::string_view entry);

// "login-item-Editor.desktop" for .../Editor.app; from the number 2 on, "login-item-Editor-2.desktop". Plain ASCII, at
// most 130 bytes, whatever the path.
std::string autostartFileName(std::string_view itemPath, int number);
// Whether a name may be one of those. Files of others may have such names, too.
bool isAutostartFileName(std::string_view name);

}  // namespace linux
