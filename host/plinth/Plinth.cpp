// A sample of the injection runtime's messaging: messages travel as signals on the session bus. docs/messages.md has
// their form.
#include "platform/PlinthRuntime.h"

#include <dbus/dbus.h>
#include <unistd.h>

#include <cstdlib>
#include <mutex>
#include <string>

namespace {

constexpr const char* kPath = "/com/tarnwick/plinth";
constexpr const char* kInterface = "com.tarnwick.plinth.Runtime";
constexpr const char* kMember = "Message";
constexpr const char* kProcessNamePrefix = "com.tarnwick.plinth.p";

enum Status : int32_t { kSent = 0, kNoBus = -1, kBadArgument = -50, kNoMemory = -108 };

std::mutex sMutex;
DBusConnection* sConnection = nullptr;  // guarded by sMutex

// Empty when nobody has started a bus: libdbus would start one of its own.
std::string busAddress() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address && *address) return address;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::string socket = std::string(runtime ? runtime : "") + "/bus";
    return access(socket.c_str(), F_OK) == 0 ? "unix:path=" + socket : "";
}

DBusConnection* openConnection() {
    std::string address = busAddress();
    DBusConnection* opened = address.empty() ? nullptr : dbus_connection_open_private(address.c_str(), nullptr);
    if (!opened) return nullptr;
    dbus_connection_set_exit_on_disconnect(opened, FALSE);
    if (dbus_bus_register(opened, nullptr)) return opened;
    dbus_connection_close(opened);
    dbus_connection_unref(opened);
    return nullptr;
}

DBusConnection* connection() {
    if (sConnection && dbus_connection_get_is_connected(sConnection)) return sConnection;
    if (sConnection) dbus_connection_unref(sConnection);
    return sConnection = openConnection();
}

bool isText(const char* text) { return text && dbus_validate_utf8(text, nullptr); }

bool appendArguments(DBusMessage* signal, const char* module, const char* message, const PlinthData* data) {
    const void* bytes = data && data->length ? data->bytes : "";
    int length = data ? static_cast<int>(data->length) : 0;
    return dbus_message_append_args(signal, DBUS_TYPE_STRING, &module, DBUS_TYPE_STRING, &message, DBUS_TYPE_ARRAY,
                                    DBUS_TYPE_BYTE, &bytes, length, DBUS_TYPE_INVALID);
}

// Writes what the socket takes without waiting, and drops what the bus has to say.
void pump(DBusConnection* bus) {
    dbus_connection_read_write(bus, 0);
    while (DBusMessage* incoming = dbus_connection_pop_message(bus)) dbus_message_unref(incoming);
}

int32_t send(const char* module, const char* message, const PlinthData* data, const char* destination) {
    if (!isText(module) || !isText(message)) return kBadArgument;
    if (data && ((data->length && !data->bytes) || data->length > DBUS_MAXIMUM_ARRAY_LENGTH)) return kBadArgument;
    std::lock_guard lock(sMutex);
    DBusConnection* bus = connection();
    if (!bus) return kNoBus;
    DBusMessage* signal = dbus_message_new_signal(kPath, kInterface, kMember);
    if (!signal) return kNoMemory;
    bool queued = (!destination || dbus_message_set_destination(signal, destination)) &&
                  appendArguments(signal, module, message, data) && dbus_connection_send(bus, signal, nullptr);
    dbus_message_unref(signal);
    pump(bus);
    return queued ? kSent : kNoMemory;
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) int32_t PlinthMessageBroadcast(const char* moduleID, const char* message,
                                                                      const PlinthData* data) {
    return send(moduleID, message, data, nullptr);
}

__attribute__((visibility("default"))) int32_t PlinthMessageSend(const char* moduleID, const char* message,
                                                                 const PlinthData* data, int32_t processID) {
    if (processID <= 0) return kBadArgument;
    return send(moduleID, message, data, (kProcessNamePrefix + std::to_string(processID)).c_str());
}

}  // extern "C"
