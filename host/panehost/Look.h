// Colours, style and icons where no desktop chooses them.
#pragma once

namespace host {

// On a desktop the look is the desktop's, unless dark colours are asked for. Call it once there is an application.
void chooseLook(bool isDark);

}  // namespace host
