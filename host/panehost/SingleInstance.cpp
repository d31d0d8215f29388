#include "host/panehost/SingleInstance.h"

#include "qt/messages/SessionBus.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace host {
namespace {

constexpr int kPatience = 5000;  // milliseconds; a window that is still opening needs some of it

QString interfaceName() { return QStringLiteral("org.freedesktop.Application"); }
QString sceneKey() { return QStringLiteral("com.tarnwick.typeslate.scene"); }

QString objectPathOf(const QString& id) {
    return QLatin1Char('/') + QString(id).replace(QLatin1Char('.'), QLatin1Char('/'));
}

}  // namespace

SingleInstance::SingleInstance(const QString& id, const QString& scene)
    : id_(id), path_(objectPathOf(id)), scene_(scene), connecting_(qt::connectToSessionBus(id)), bus_(id) {}

SingleInstance::~SingleInstance() {
    if (connecting_.valid()) connecting_.wait();
    QDBusConnection::disconnectFromBus(id_);
}

bool SingleInstance::handOver(QVariantMap platformData) {
    connecting_.get();
    bus_ = QDBusConnection(id_);
    if (!bus_.isConnected()) return false;
    bus_.registerVirtualObject(path_, this);
    // Whoever has the name keeps it, and the bus takes it from the dead.
    if (bus_.interface()->registerService(id_) == QDBusConnectionInterface::ServiceRegistered) return false;
    platformData.insert(sceneKey(), scene_);
    QDBusMessage call = QDBusMessage::createMethodCall(id_, path_, interfaceName(), QStringLiteral("Activate"));
    call << platformData;
    return bus_.call(call, QDBus::Block, kPatience).type() == QDBusMessage::ReplyMessage;
}

bool SingleInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.interface() != interfaceName() || message.member() != QStringLiteral("Activate") ||
        message.signature() != QStringLiteral("a{sv}"))
        return false;
    auto platformData = qdbus_cast<QVariantMap>(message.arguments().constFirst());
    if (platformData.value(sceneKey(), scene_).toString() != scene_)
        return connection.send(message.createErrorReply(QDBusError::Failed, QStringLiteral("another pane or display")));
    handler_(platformData);
    return connection.send(message.createReply());
}

}  // namespace host
