#include "qt/controls/Motion.h"

#include "qt/messages/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QStyle>

#include <utility>

namespace qt {

namespace {

constexpr int kPatience = 5000;  // milliseconds

QDBusMessage animationQuestion() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    question << QStringLiteral("org.gnome.desktop.interface") << QStringLiteral("enable-animations");
    return question;
}

// A variant in a variant, by the portal's contract.
bool saysNo(const QDBusPendingReply<QDBusVariant>& answer) {
    if (!answer.isValid()) return false;
    QVariant value = answer.value().variant();
    if (value.userType() == qMetaTypeId<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value.isValid() && !value.toBool();
}

}  // namespace

void whenStillnessIsWanted(const QWidget& widget, QObject& context, std::function<void()> function) {
    if (widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) <= 0) return function();
    const QString name = freshConnectionName();
    QDBusConnection bus = sessionBusConnection(name);
    if (bus.isConnected()) {
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(animationQuestion(), kPatience), &context);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context,
                         [watcher, function = std::move(function)] {
                             if (saysNo(*watcher)) function();
                             watcher->deleteLater();
                         });
        QObject::connect(watcher, &QObject::destroyed, [name] { QDBusConnection::disconnectFromBus(name); });
        return;
    }
    QDBusConnection::disconnectFromBus(name);
}

}  // namespace qt
