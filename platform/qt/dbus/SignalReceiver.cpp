#include "platform/qt/dbus/SignalReceiver.h"

namespace platform::qt {

SignalReceiver::SignalReceiver(QDBusConnection bus, const char* path, const char* interface, const char* member,
                               const QStringList& arguments, const char* signature, Handler handler)
    : signature_(signature), handler_(std::move(handler)) {
    bus.connect(QString(), QLatin1String(path), QLatin1String(interface), QLatin1String(member), arguments, QString(),
                this, SLOT(receive(QDBusMessage)));
}

void SignalReceiver::receive(const QDBusMessage& message) {
    if (message.signature() != QLatin1String(signature_)) return;
    Handler handler = handler_;  // it may end the observation that holds it
    handler(message);
}

}  // namespace platform::qt
