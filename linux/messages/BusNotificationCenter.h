// Distributed notifications as session bus signals, without a toolkit; docs/messages.md has their form.
#pragma once

#include "linux/messages/SessionBus.h"
#include "platform/Log.h"
#include "platform/Notifications.h"

namespace linux {

// A notification's sender is the unique name of a connection to the bus. Without a bus posts are lost and nothing is
// heard, which one line in the log says. Handlers are called from the bus's handleEvents(), or for the latest of a
// frame by the loop. Bus, loop and log outlive it.
class BusNotificationCenter final : public platform::DistributedNotificationCenter {
public:
    BusNotificationCenter(SessionBus& bus, platform::RunLoop& loop, platform::Log& log)
        : bus_(bus), loop_(loop), log_(log) {}

    void post(std::string_view name, std::string_view object, const platform::PropertyList& userInfo,
              bool deliverImmediately) override;
    std::unique_ptr<platform::Observation> addObserver(
        std::string_view name, std::string_view object, platform::Delivery delivery,
        std::function<void(const platform::Notification&)> handler) override;

private:
    SessionBus& bus_;
    platform::RunLoop& loop_;
    platform::Log& log_;
    bool saidUnreachable_ = false;
};

}  // namespace linux
