#include "platform/qt/dbus/SessionBus.h"

#include <QFileInfo>

namespace platform::qt {

namespace {

bool hasAddress() {
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) return true;
    QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"));
}

}  // namespace

QDBusConnection sessionBusConnection(const QString& name) {
    QDBusConnection kept(name);
    if (kept.isConnected() || !hasAddress()) return kept;
    QDBusConnection::disconnectFromBus(name);
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
}

}  // namespace platform::qt
