// The Startup Notification Protocol's end of a start that has found a window already open.
#pragma once

#include <cstdint>
#include <string>

namespace host {

// Tells the desktop that the start has ended, and asks the window manager to activate the window with the time of the
// user's deed that is in the id ("…_TIME<number>"), without which it may take a raised window for an intrusion. False
// when it could not ask: no display, no time in the id, or built without libstartup-notification.
bool endX11Startup(std::uint32_t window, const std::string& id);

}  // namespace host
