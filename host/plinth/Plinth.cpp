// A sample of the injection runtime's messaging: messages travel as signals on the session bus. docs/messages.md has
// their form.
#include "linux/messages/BusConnection.h"
#include "platform/MessageForms.h"
#include "platform/PlinthRuntime.h"

#include <mutex>
#include <string>

namespace {

constexpr platform::SignalForm kForm = platform::kRuntimeMessageForm;
constexpr const char* kProcessNamePrefix = "com.tarnwick.plinth.p";

enum Status : int32_t { kSent = 0, kNoBus = -1, kBadArgument = -50, kNoMemory = -108 };

std::mutex sMutex;
DBusConnection* sConnection = nullptr;  // guarded by sMutex

DBusConnection* connection() {
    if (sConnection && dbus_connection_get_is_connected(sConnection)) return sConnection;
    if (sConnection) dbus_connection_unref(sConnection);
    return sConnection = linux::openSessionBus().release();
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
    DBusMessage* signal = dbus_message_new_signal(kForm.path, kForm.interface, kForm.member);
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
