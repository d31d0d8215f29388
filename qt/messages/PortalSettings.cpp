#include "qt/messages/PortalSettings.h"

#include "qt/messages/SignalReceiver.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <utility>

namespace qt {

namespace {

constexpr const char* kService = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kInterface = "org.freedesktop.portal.Settings";

}  // namespace

PortalSettings::PortalSettings(QDBusConnection bus, std::vector<Setting> settings, Handler handler)
    : bus_(std::move(bus)),
      settings_(std::move(settings)),
      handler_(std::move(handler)),
      starts_(QLatin1String(kService), bus_, QDBusServiceWatcher::WatchForRegistration),
      changes_(new SignalReceiver(bus_, {kPath, kInterface, "SettingChanged", "ssv"}, {},
                                  [this](const QDBusMessage& signal) { takeChange(signal); })) {
    QObject::connect(&starts_, &QDBusServiceWatcher::serviceRegistered, &context_, [this] { ask(); });
    ask();
}

PortalSettings::~PortalSettings() { changes_->retire(); }

// The bus answers this first, and answers tell their sender in some versions of Qt only.
void PortalSettings::askForOwner() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetNameOwner"));
    question << QString(QLatin1String(kService));
    auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question), &context_);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &context_, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QString> reply = *answer;
        if (reply.isValid()) owner_ = reply.value();
    });
}

// By Read, which every version of the portal has.
void PortalSettings::ask() {
    askForOwner();
    for (const Setting& setting : settings_) {
        QDBusMessage question = QDBusMessage::createMethodCall(QLatin1String(kService), QLatin1String(kPath),
                                                               QLatin1String(kInterface), QStringLiteral("Read"));
        question << QString(QLatin1String(setting.space)) << QString(QLatin1String(setting.name));
        auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question), &context_);
        QObject::connect(answer, &QDBusPendingCallWatcher::finished, &context_, [this, answer, &setting] {
            answer->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *answer;
            if (reply.isValid()) take(setting, reply.value().variant());
        });
    }
}

// Other programs may send such a signal, too.
void PortalSettings::takeChange(const QDBusMessage& signal) {
    const QList<QVariant> arguments = signal.arguments();
    if (signal.service() != owner_) return;
    for (const Setting& setting : settings_)
        if (arguments.at(0).toString() == QLatin1String(setting.space) &&
            arguments.at(1).toString() == QLatin1String(setting.name))
            take(setting, arguments.at(2).value<QDBusVariant>().variant());
}

// An answer is a variant in a variant, by the portal's contract.
void PortalSettings::take(const Setting& setting, QVariant value) {
    if (value.userType() == qMetaTypeId<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    handler_(setting.name, value);
}

}  // namespace qt
