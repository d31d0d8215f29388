// The names under which desktops start applications, as units of the user's service manager.
#pragma once

#include <string>
#include <string_view>

namespace linux {

// The identifier of the desktop entry in the name of a control group (the file "cgroup" of a process): that of an
// "app-[LAUNCHER-]IDENTIFIER-RANDOM.scope" or "app-[LAUNCHER-]IDENTIFIER[@RANDOM].service", as
// https://systemd.io/DESKTOP_ENVIRONMENTS/ describes them, or of a "snap.NAME.PROGRAM...". Empty when there is none.
std::string applicationOfControlGroup(std::string_view controlGroup);

}  // namespace linux
