#include "linux/messages/SessionBus.h"

#include <poll.h>

#include <chrono>
#include <utility>

using platform::Observation;
using platform::SignalForm;

namespace linux {
namespace {

constexpr int kPatience = 2000;  // milliseconds

struct BusError : DBusError {
    BusError() { dbus_error_init(this); }
    BusError(const BusError&) = delete;
    ~BusError() { dbus_error_free(this); }
};

// One that cannot stand in a rule is left to the receiver to compare.
std::string argumentRule(int index, const std::string& text) {
    if (text.empty() || text.find('\'') != std::string::npos) return "";
    return ",arg" + std::to_string(index) + "='" + text + "'";
}

std::string ruleOf(const SignalForm& form, const std::string& first, const std::string& second) {
    return std::string("type='signal',path='") + form.path + "',interface='" + form.interface + "',member='" +
           form.member + "'" + argumentRule(0, first) + argumentRule(1, second);
}

}  // namespace

struct SessionBus::Receiver {
    SignalForm form;
    std::string first, second, rule;
    Handler handler;

    bool isMeant(DBusMessage& message) const {
        if (!dbus_message_is_signal(&message, form.interface, form.member) ||
            !dbus_message_has_path(&message, form.path) || !dbus_message_has_signature(&message, form.signature))
            return false;
        const char *one = "", *two = "";
        dbus_message_get_args(&message, nullptr, DBUS_TYPE_STRING, &one, DBUS_TYPE_STRING, &two, DBUS_TYPE_INVALID);
        return (first.empty() || first == one) && (second.empty() || second == two);
    }
};

class SessionBus::ReceiverObservation final : public Observation {
public:
    ReceiverObservation(SessionBus& bus, std::shared_ptr<Receiver> receiver)
        : bus_(bus), receiver_(std::move(receiver)) {}
    ~ReceiverObservation() override {
        if (bus_.isConnected()) dbus_bus_remove_match(bus_.connection_.get(), receiver_->rule.c_str(), nullptr);
    }

private:
    SessionBus& bus_;
    std::shared_ptr<Receiver> receiver_;
};

SessionBus::SessionBus() : connection_(openSessionBus()) {}

SessionBus::~SessionBus() {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(kPatience);
    while (isConnected() && dbus_connection_has_messages_to_send(connection_.get()) && Clock::now() < end)
        dbus_connection_read_write(connection_.get(), kPatience);
}

bool SessionBus::isConnected() const { return connection_ && dbus_connection_get_is_connected(connection_.get()); }

void SessionBus::send(BusMessage signal) {
    if (signal && isConnected()) dbus_connection_send(connection_.get(), signal.get(), nullptr);
}

std::unique_ptr<Observation> SessionBus::observe(const SignalForm& form, std::string_view first,
                                                 std::string_view second, Handler handler) {
    auto receiver =
        std::make_shared<Receiver>(Receiver{form, std::string(first), std::string(second), {}, std::move(handler)});
    receiver->rule = ruleOf(form, receiver->first, receiver->second);
    receivers_.push_back(receiver);
    BusError error;  // asked for, so that the bus is waited for
    if (isConnected()) dbus_bus_add_match(connection_.get(), receiver->rule.c_str(), &error);
    return std::make_unique<ReceiverObservation>(*this, std::move(receiver));
}

std::optional<std::int64_t> SessionBus::processOf(const std::string& name) {
    if (!isConnected() || name.empty()) return std::nullopt;
    BusMessage call(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS,
                                                 "GetConnectionUnixProcessID"));
    const char* text = name.c_str();
    if (!call || !dbus_message_append_args(call.get(), DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID)) return std::nullopt;
    BusMessage reply(dbus_connection_send_with_reply_and_block(connection_.get(), call.get(), kPatience, nullptr));
    dbus_uint32_t process = 0;
    if (reply) dbus_message_get_args(reply.get(), nullptr, DBUS_TYPE_UINT32, &process, DBUS_TYPE_INVALID);
    return process > 0 ? std::optional<std::int64_t>(process) : std::nullopt;
}

int SessionBus::descriptor() const {
    int number = -1;
    if (connection_) dbus_connection_get_unix_fd(connection_.get(), &number);
    return number;
}

short SessionBus::events() const {
    const bool hasMore = connection_ && dbus_connection_has_messages_to_send(connection_.get());
    return static_cast<short>(hasMore ? POLLIN | POLLOUT : POLLIN);
}

// An answer that is waited for leaves what came before it in the queue.
bool SessionBus::isWaiting() const {
    return isConnected() && dbus_connection_get_dispatch_status(connection_.get()) == DBUS_DISPATCH_DATA_REMAINS;
}

bool SessionBus::handleEvents() {
    if (!isConnected()) return false;
    dbus_connection_read_write(connection_.get(), 0);
    while (BusMessage message{dbus_connection_pop_message(connection_.get())}) deliver(*message);
    return isConnected();
}

// A handler may end any observation, its own included.
void SessionBus::deliver(DBusMessage& message) {
    if (dbus_message_get_type(&message) == DBUS_MESSAGE_TYPE_METHOD_CALL && !dbus_message_get_no_reply(&message))
        send(BusMessage(dbus_message_new_error(&message, DBUS_ERROR_UNKNOWN_METHOD, "")));
    std::erase_if(receivers_, [](const auto& weak) { return weak.expired(); });
    for (const auto& weak : std::vector(receivers_))
        if (auto receiver = weak.lock(); receiver && receiver->isMeant(message)) receiver->handler(message);
}

}  // namespace linux
