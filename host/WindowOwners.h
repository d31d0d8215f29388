// Whose windows the user has open.
#pragma once

#include "linux/processes/LinuxProcesses.h"

#include <vector>

namespace host {

// Of the windows that the window manager of an X11 screen lists. Empty on Wayland, which tells nobody, without a window
// manager, and built without libxcb.
std::vector<linux::WindowOwner> windowOwners();

}  // namespace host
