// What a desktop gives a program that it starts for the user, so that the window may come to the front and the desktop
// knows that the start has ended: DESKTOP_STARTUP_ID under X11 (Startup Notification Protocol), XDG_ACTIVATION_TOKEN
// under Wayland (the xdg-activation protocol).
#pragma once

#include <QVariantMap>

class QWidget;

namespace host {

// The tokens of this start by the names that Activate of org.freedesktop.Application gives them. To be called before
// there is a QApplication, which takes them out of the environment.
QVariantMap startupTokens();

// Brings a window that may be minimised or behind others to the front on behalf of the start that had these tokens.
void bringForward(QWidget& window, const QVariantMap& tokens);

}  // namespace host
