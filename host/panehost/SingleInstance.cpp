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

// The interface as the desktop entries' standard has it. What there is no handler for is refused with the text.
struct Method {
    const char *name, *signature, *refusal, *arguments;
};
constexpr const char* kPlatformData = R"(<arg name="platform_data" type="a{sv}" direction="in"/>)";
constexpr Method kMethods[] = {
    {"Activate", "a{sv}", nullptr, ""},
    {"Open", "asa{sv}", "no files are opened", R"(<arg name="uris" type="as" direction="in"/>)"},
    {"ActivateAction", "sava{sv}", "there are no actions",
     R"(<arg name="action_name" type="s" direction="in"/><arg name="parameter" type="av" direction="in"/>)"},
};

const Method* methodOf(const QDBusMessage& message) {
    const bool isOurs = message.interface().isEmpty() || message.interface() == interfaceName();
    for (const Method& method : kMethods)
        if (isOurs && message.member() == QLatin1String(method.name) &&
            message.signature() == QLatin1String(method.signature))
            return &method;
    return nullptr;
}

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

QString SingleInstance::introspect(const QString&) const {
    QString text = QStringLiteral("<interface name=\"%1\">").arg(interfaceName());
    for (const Method& method : kMethods)
        text += QStringLiteral("<method name=\"%1\">%2%3</method>")
                    .arg(QLatin1String(method.name), QLatin1String(method.arguments), QLatin1String(kPlatformData));
    return text + QStringLiteral("</interface>");
}

bool SingleInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const Method* method = methodOf(message);
    if (!method) return false;
    if (method->refusal)
        return connection.send(message.createErrorReply(QDBusError::NotSupported, QLatin1String(method->refusal)));
    auto platformData = qdbus_cast<QVariantMap>(message.arguments().constFirst());
    if (platformData.value(sceneKey(), scene_).toString() != scene_)
        return connection.send(message.createErrorReply(QDBusError::Failed, QStringLiteral("another pane or display")));
    handler_(platformData);
    return connection.send(message.createReply());
}

}  // namespace host
