// The session bus, as far as this process may use one.
#pragma once

#include <QDBusConnection>

#include <future>

namespace qt {

// A connection of the caller's own under the given name, made anew when the last one broke; not connected when there is
// no session bus. Never starts a bus: one that nobody else listens to is none.
QDBusConnection sessionBusConnection(const QString& name);

// Has the connection of that name made on another thread, so that nobody need wait for the bus to answer. Until the
// result is ready, which its end waits for, nothing else may ask for a connection of this name.
std::future<void> connectToSessionBus(const QString& name);

// A name for a connection that nobody else in this process has.
QString freshConnectionName();

}  // namespace qt
