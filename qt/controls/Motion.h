// Whether the user wants pictures and texts to move by themselves.
#pragma once

#include <QWidget>

#include <functional>

namespace qt {

// Calls the function if the user has switched animations off: at once where the widget's style knows, else when the
// desktop has answered (the settings portal of freedesktop.org, which hands on what GNOME and others keep), unless the
// context has gone by then. Without either answer things move.
void whenStillnessIsWanted(const QWidget& widget, QObject& context, std::function<void()> function);

}  // namespace qt
