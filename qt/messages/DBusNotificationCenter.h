// Distributed notifications as session bus signals; docs/messages.md has their form. A QCoreApplication must exist.
#pragma once

#include "platform/Log.h"
#include "platform/Notifications.h"

#include "qt/messages/LatestMessages.h"

#include <QDBusConnection>
#include <QString>

#include <future>

namespace qt {

// A notification's sender is the unique name of a connection to the bus.
//
// Connects at the first use, which waits for the bus to answer; posting itself only queues. Its end waits up to two
// seconds until the bus has what was posted. Where no bus can be reached posts are lost and nothing is heard, which one
// line in the log says. A bus that went away is looked for again at the next use; observations made before it went end
// with it. For the main thread; handlers are called there.
class DBusNotificationCenter final : public platform::DistributedNotificationCenter {
public:
    explicit DBusNotificationCenter(platform::Log& log);
    ~DBusNotificationCenter() override;

    // Has the connection made on a thread meanwhile. The centre must be destroyed before the process ends.
    void connectAhead();

    void post(std::string_view name, std::string_view object, const platform::PropertyList& userInfo,
              bool deliverImmediately) override;
    std::unique_ptr<platform::Observation> addObserver(
        std::string_view name, std::string_view object, platform::Delivery delivery,
        std::function<void(const platform::Notification&)> handler) override;

private:
    QDBusConnection bus();

    platform::Log& log_;
    QString connectionName_;
    std::future<void> connecting_;  // ahead; valid until the first use
    LatestMessages latest_;
    bool saidUnreachable_ = false, hasPosted_ = false;
};

}  // namespace qt
