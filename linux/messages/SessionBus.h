// Sending signals over the session bus and hearing them, for one thread.
#pragma once

#include "linux/messages/BusConnection.h"
#include "linux/messages/EventLoop.h"
#include "platform/MessageForms.h"
#include "platform/Notifications.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace linux {

// Connects when it is made, which waits for the bus to answer, and never again. Its end waits up to two seconds until
// the bus has what was sent.
class SessionBus final : public EventLoop::Source {
public:
    SessionBus();
    ~SessionBus() override;
    bool isConnected() const;  // false: there is no session bus, or it has gone

    // Does not wait. Without a bus the message is lost.
    void send(BusMessage signal);
    // Calls the handler, from handleEvents(), for each signal of that form whose first arguments are the given texts;
    // an empty one stands for any. Returns when the bus knows. It must not outlive the bus.
    using Handler = std::function<void(DBusMessage&)>;
    std::unique_ptr<platform::Observation> observe(const platform::SignalForm& form, std::string_view first,
                                                   std::string_view second, Handler handler);
    // The process behind a unique name. Nothing when it has left the bus, or the bus cannot tell within two seconds.
    std::optional<std::int64_t> processOf(const std::string& name);

    int descriptor() const override;
    short events() const override;
    bool isWaiting() const override;
    bool handleEvents() override;

private:
    struct Receiver;
    class ReceiverObservation;
    void deliver(DBusMessage& message);

    BusConnection connection_;
    std::vector<std::weak_ptr<Receiver>> receivers_;
};

}  // namespace linux
