#include "linux/messages/BusNotificationCenter.h"

#include "linux/messages/BusValues.h"

#include <utility>

using namespace platform;

namespace linux {
namespace {

constexpr double kFrame = 0.016;  // seconds

Notification notificationOf(DBusMessage& message) {
    DBusMessageIter at;
    dbus_message_iter_init(&message, &at);
    PropertyList arguments[4];
    for (PropertyList& argument : arguments) {
        argument = propertyListFromMessage(at);
        dbus_message_iter_next(&at);
    }
    const char* sender = dbus_message_get_sender(&message);
    return {std::string(arguments[0].stringValue()), std::string(arguments[1].stringValue()), arguments[2],
            arguments[3].boolValue(), sender ? sender : ""};
}

// Keeps the last message of a frame; one that is held costs no decoding.
class LatestMessage {
public:
    LatestMessage(RunLoop& loop, SessionBus::Handler handler) : loop_(loop), handler_(std::move(handler)) {}
    void hold(DBusMessage& message) {
        held_.reset(dbus_message_ref(&message));
        if (frame_) return;
        frame_ = loop_.scheduleTimer(kFrame, false, [this] {
            frame_.reset();
            BusMessage last = std::move(held_);
            SessionBus::Handler handler = handler_;  // it may end the observation that holds it
            handler(*last);
        });
    }

private:
    RunLoop& loop_;
    SessionBus::Handler handler_;
    BusMessage held_;
    std::unique_ptr<Timer> frame_;
};

}  // namespace

void BusNotificationCenter::post(std::string_view name, std::string_view object, const PropertyList& userInfo,
                                 bool deliverImmediately) {
    if (!bus_.isConnected()) {
        if (!std::exchange(saidUnreachable_, true)) log_("No session bus can be reached: changes are not announced");
        return;
    }
    BusMessage signal(
        dbus_message_new_signal(kNotificationForm.path, kNotificationForm.interface, kNotificationForm.member));
    const std::string texts[] = {std::string(name), std::string(object)};
    DBusMessageIter to;
    dbus_message_iter_init_append(signal.get(), &to);
    for (const std::string& text : texts) {
        const char* start = text.c_str();
        dbus_message_iter_append_basic(&to, DBUS_TYPE_STRING, &start);
    }
    if (!appendToMessage(to, userInfo))
        log_("The notification \"%@\" is sent without its user information, which is nested too deeply", name);
    const dbus_bool_t immediately = deliverImmediately;
    dbus_message_iter_append_basic(&to, DBUS_TYPE_BOOLEAN, &immediately);
    bus_.send(std::move(signal));
}

std::unique_ptr<Observation> BusNotificationCenter::addObserver(std::string_view name, std::string_view object,
                                                                Delivery delivery,
                                                                std::function<void(const Notification&)> handler) {
    SessionBus::Handler decode = [handler = std::move(handler)](DBusMessage& message) {
        handler(notificationOf(message));
    };
    if (delivery == Delivery::Each) return bus_.observe(kNotificationForm, name, object, std::move(decode));
    auto latest = std::make_shared<LatestMessage>(loop_, std::move(decode));
    return bus_.observe(kNotificationForm, name, object, [latest](DBusMessage& message) { latest->hold(message); });
}

}  // namespace linux
