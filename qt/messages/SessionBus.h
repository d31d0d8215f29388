// The session bus, as far as this process may use one.
#pragma once

#include <QDBusConnection>

namespace qt {

// A connection of the caller's own under the given name, made anew when the last one broke; not connected when there is
// no session bus. Never starts a bus: one that nobody else listens to is none.
QDBusConnection sessionBusConnection(const QString& name);

// A name for a connection that nobody else in this process has.
QString freshConnectionName();

}  // namespace qt
