// One window for all starts of a program: the first owns a name on the session bus, and the later ones ask it there to
// come forward, by the method Activate of org.freedesktop.Application (freedesktop.org, desktop entries, "D-Bus
// Activation"), so that desktops can ask too. There is nothing else that they may ask: the program opens no files and
// has no actions, and answers so.
#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <functional>
#include <future>

namespace host {

class SingleInstance final : public QDBusVirtualObject {
public:
    // The id is the bus name, and with slashes the object's path. Starts whose scenes differ (another pane, display or
    // home) cannot stand in for one another. Connects on a thread meanwhile.
    SingleInstance(const QString& id, const QString& scene);
    ~SingleInstance() override;

    // To be called once. Makes this process the first, or asks the one that is to come forward. True: it does, and
    // nothing is left to do here. False where there is no bus, no first, one of another scene, or one that does not
    // answer within seconds.
    bool handOver(QVariantMap platformData);

    // Told what a later start or a desktop hands over; requests that come before wait for the handler and its loop.
    void setHandler(std::function<void(const QVariantMap& platformData)> handler) { handler_ = std::move(handler); }

private:
    QString introspect(const QString&) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    const QString id_, path_, scene_;
    std::future<void> connecting_;  // valid until the hand-over
    QDBusConnection bus_;
    std::function<void(const QVariantMap&)> handler_ = [](const QVariantMap&) {};
};

}  // namespace host
