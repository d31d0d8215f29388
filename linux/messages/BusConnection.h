// Connections to the session bus by libdbus.
#pragma once

#include <dbus/dbus.h>

#include <memory>

namespace linux {

struct BusCloser {
    void operator()(DBusConnection* connection) const;
};
using BusConnection = std::unique_ptr<DBusConnection, BusCloser>;

struct MessageReleaser {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using BusMessage = std::unique_ptr<DBusMessage, MessageReleaser>;

// A connection of the caller's own; null when there is no session bus. Never starts a bus: one that nobody else listens
// to is none. The environment is read at each call, which waits for the bus to answer.
BusConnection openSessionBus();

}  // namespace linux
