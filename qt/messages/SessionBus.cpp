#include "qt/messages/SessionBus.h"

#include <QFileInfo>

#include <atomic>

namespace qt {

namespace {

// Empty when nobody has started a bus. Read anew each time: libdbus would keep the first answer for good.
QString address() {
    QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty()) return address;
    QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
    return QFileInfo::exists(socket) ? QStringLiteral("unix:path=") + socket : QString();
}

}  // namespace

QDBusConnection sessionBusConnection(const QString& name) {
    QDBusConnection kept(name);
    QString bus = kept.isConnected() ? QString() : address();
    if (bus.isEmpty()) return kept;
    QDBusConnection::disconnectFromBus(name);
    return QDBusConnection::connectToBus(bus, name);
}

QString freshConnectionName() {
    static std::atomic<int> sCount = 0;
    return QStringLiteral("typeslate-%1").arg(++sCount);
}

}  // namespace qt
