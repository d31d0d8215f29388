// The module that typeslatectl loads for its commands on the session bus.
#include "linux/messages/BusNotificationCenter.h"
#include "linux/system/SystemLog.h"
#include "tools/headless/BusModule.h"

using platform::kRuntimeMessageForm;

namespace tools {
namespace {

class DBusModule final : public BusModule {
public:
    bool isConnected() override { return bus_.isConnected(); }
    platform::DistributedNotificationCenter& notifications() override { return center_; }
    platform::RunLoop& runLoop() override { return loop_; }
    std::optional<std::int64_t> processOf(const std::string& sender) override { return bus_.processOf(sender); }
    void observeBroadcasts(std::function<void(std::string_view, std::string_view)> handler) override {
        broadcasts_ = bus_.observe(kRuntimeMessageForm, "", "", [handler = std::move(handler)](DBusMessage& signal) {
            const char *module = "", *message = "";
            dbus_message_get_args(&signal, nullptr, DBUS_TYPE_STRING, &module, DBUS_TYPE_STRING, &message,
                                  DBUS_TYPE_INVALID);
            handler(module, message);
        });
    }
    void run() override { loop_.run(bus_); }
    void stop() override { loop_.stop(); }

private:
    linux::EventLoop loop_;
    linux::SystemLog log_;
    linux::SessionBus bus_;
    linux::BusNotificationCenter center_{bus_, loop_, log_};
    std::unique_ptr<platform::Observation> broadcasts_;
};

}  // namespace
}  // namespace tools

// Its end waits until the bus has what was sent.
extern "C" __attribute__((visibility("default"))) tools::BusModule* typeslatectl_busModule() {
    static tools::DBusModule sModule;
    return &sModule;
}
