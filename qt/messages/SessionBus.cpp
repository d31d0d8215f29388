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

QDBusConnection connectedTo(const QString& bus, const QString& name) {
    if (bus.isEmpty()) return QDBusConnection(name);
    QDBusConnection::disconnectFromBus(name);
    return QDBusConnection::connectToBus(bus, name);
}

}  // namespace

QDBusConnection sessionBusConnection(const QString& name) {
    QDBusConnection kept(name);
    return kept.isConnected() ? kept : connectedTo(address(), name);
}

// Whoever asks changes the environment perhaps, so it is read here.
std::future<void> connectToSessionBus(const QString& name) {
    return std::async(std::launch::async, [bus = address(), name] { connectedTo(bus, name); });
}

QString freshConnectionName() {
    static std::atomic<int> sCount = 0;
    return QStringLiteral("typeslate-%1").arg(++sCount);
}

}  // namespace qt
