#include "qt/messages/DBusNotificationCenter.h"

#include "qt/messages/DBusValues.h"
#include "qt/messages/SessionBus.h"
#include "qt/messages/SignalReceiver.h"
#include "qt/texts/Utf8.h"

#include <QCoreApplication>
#include <QDBusMessage>

namespace qt {

using namespace platform;

namespace {

class SignalObservation final : public Observation {
public:
    SignalObservation(QDBusConnection bus, const QStringList& arguments, Delivery delivery, LatestMessages& latest,
                      SignalReceiver::Handler handler)
        : latest_(latest), handler_(std::move(handler)) {
        auto hold = [this](const QDBusMessage& message) { latest_.hold(handler_, message); };
        receiver_ = new SignalReceiver(std::move(bus), kNotificationForm, arguments,
                                       delivery == Delivery::Latest ? hold : handler_);
    }
    ~SignalObservation() override {
        latest_.forget(handler_);
        receiver_->retire();
    }

private:
    LatestMessages& latest_;
    const SignalReceiver::Handler handler_;
    SignalReceiver* receiver_;
};

Notification notificationOf(const QDBusMessage& message) {
    const QList<QVariant> arguments = message.arguments();
    return {arguments.at(0).toString().toStdString(), arguments.at(1).toString().toStdString(),
            propertyListFromDBus(arguments.at(2)), arguments.at(3).toBool(), message.service().toStdString()};
}

// A connection that is closed takes along what it has not written yet. What is asked last is answered last.
void waitUntilSent(const QDBusConnection& bus) {
    constexpr int kPatience = 2000;  // milliseconds
    if (!bus.isConnected()) return;
    bus.call(
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")),
        QDBus::Block, kPatience);
}

// Null, not empty, where any text will do.
QString argumentToMatch(std::string_view text) { return text.empty() ? QString() : toQString(text); }

}  // namespace

DBusNotificationCenter::DBusNotificationCenter(Log& log) : log_(log), connectionName_(freshConnectionName()) {
    registerDBusTypes();
}

void DBusNotificationCenter::connectAhead() {
    if (!connecting_.valid()) connecting_ = connectToSessionBus(connectionName_);
}

DBusNotificationCenter::~DBusNotificationCenter() {
    if (connecting_.valid()) connecting_.wait();
    if (hasPosted_ && QCoreApplication::instance()) waitUntilSent(QDBusConnection(connectionName_));
    QDBusConnection::disconnectFromBus(connectionName_);
}

QDBusConnection DBusNotificationCenter::bus() {
    if (connecting_.valid()) connecting_.get();
    QDBusConnection connection = sessionBusConnection(connectionName_);
    if (!connection.isConnected() && !std::exchange(saidUnreachable_, true))
        log_("No session bus can be reached: changes are not announced");
    return connection;
}

void DBusNotificationCenter::post(std::string_view name, std::string_view object, const PropertyList& userInfo,
                                  bool deliverImmediately) {
    QDBusConnection connection = bus();
    if (!connection.isConnected()) return;
    auto information = dbusDictionary(userInfo);
    if (!information)
        log_("The notification \"%@\" is sent without its user information, which is nested too deeply", name);
    QDBusMessage signal =
        QDBusMessage::createSignal(QLatin1String(kNotificationForm.path), QLatin1String(kNotificationForm.interface),
                                   QLatin1String(kNotificationForm.member));
    hasPosted_ = true;
    signal << toQString(name) << toQString(object) << information.value_or(QVariantMap()) << deliverImmediately;
    connection.send(signal);
}

std::unique_ptr<Observation> DBusNotificationCenter::addObserver(std::string_view name, std::string_view object,
                                                                 Delivery delivery,
                                                                 std::function<void(const Notification&)> handler) {
    return std::make_unique<SignalObservation>(
        bus(), QStringList{argumentToMatch(name), argumentToMatch(object)}, delivery, latest_,
        [handler = std::move(handler)](const QDBusMessage& message) { handler(notificationOf(message)); });
}

}  // namespace qt
