// The desktop's settings portal on the test's bus, with the settings that it was given.
#pragma once

#include "qt/messages/PortalSettings.h"
#include "qt/messages/SessionBus.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <map>

struct FakePortal : QDBusVirtualObject {
    static constexpr const char *kName = "org.freedesktop.portal.Desktop", *kPath = "/org/freedesktop/portal/desktop",
                                *kInterface = "org.freedesktop.portal.Settings";

    FakePortal() { bus.registerVirtualObject(kPath, this); }
    ~FakePortal() override { QDBusConnection::disconnectFromBus(QStringLiteral("portal")); }
    void start() { bus.registerService(kName); }
    void set(const char* space, const char* name, const QVariant& value) {
        values[QLatin1String(space) + QLatin1String(name)] = value;
        announce(bus, space, name, value);
    }
    static void announce(QDBusConnection bus, const char* space, const char* name, const QVariant& value) {
        QDBusMessage signal = QDBusMessage::createSignal(kPath, kInterface, QStringLiteral("SettingChanged"));
        bus.send(signal << QLatin1String(space) << QLatin1String(name) << QVariant::fromValue(QDBusVariant(value)));
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& question, const QDBusConnection&) override {
        auto found = values.find(question.arguments().value(0).toString() + question.arguments().value(1).toString());
        if (question.member() != QStringLiteral("Read") || found == values.end()) return false;
        const QVariant value = QVariant::fromValue(QDBusVariant(found->second));
        return bus.send(question.createReply(QVariant::fromValue(QDBusVariant(value))));
    }

    QDBusConnection bus = qt::sessionBusConnection(QStringLiteral("portal"));
    std::map<QString, QVariant> values;
};
