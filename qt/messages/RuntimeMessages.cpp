#include "qt/messages/RuntimeMessages.h"

#include "qt/messages/SessionBus.h"
#include "qt/messages/SignalReceiver.h"

namespace qt {

namespace {

RuntimeMessage messageOf(const QDBusMessage& signal) {
    const QList<QVariant> arguments = signal.arguments();
    return {arguments.at(0).toString().toStdString(), arguments.at(1).toString().toStdString(),
            arguments.at(2).toByteArray().toStdString()};
}

}  // namespace

RuntimeMessageListener::RuntimeMessageListener(std::function<void(const RuntimeMessage&)> handler)
    : connectionName_(freshConnectionName()),
      bus_(sessionBusConnection(connectionName_)),
      receiver_(new SignalReceiver(
          bus_, platform::kRuntimeMessageForm, {},
          [handler = std::move(handler)](const QDBusMessage& signal) { handler(messageOf(signal)); })) {}

RuntimeMessageListener::~RuntimeMessageListener() {
    receiver_.reset();
    QDBusConnection::disconnectFromBus(connectionName_);
}

}  // namespace qt
