#include "linux/messages/BusConnection.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

namespace linux {
namespace {

// Empty when nobody has started a bus: libdbus would start one of its own.
std::string busAddress() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address && *address) return address;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::string socket = std::string(runtime ? runtime : "") + "/bus";
    return ::access(socket.c_str(), F_OK) == 0 ? "unix:path=" + socket : "";
}

}  // namespace

void BusCloser::operator()(DBusConnection* connection) const {
    dbus_connection_close(connection);
    dbus_connection_unref(connection);
}

BusConnection openSessionBus() {
    std::string address = busAddress();
    BusConnection opened(address.empty() ? nullptr : dbus_connection_open_private(address.c_str(), nullptr));
    if (!opened) return nullptr;
    dbus_connection_set_exit_on_disconnect(opened.get(), FALSE);
    if (!dbus_bus_register(opened.get(), nullptr)) opened.reset();
    return opened;
}

}  // namespace linux
