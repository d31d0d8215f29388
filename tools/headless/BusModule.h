// What typeslatectl needs of the session bus, in a module that is loaded only by the commands that use it: the others
// start without the bus library, whose loading takes a twelfth of their time.
#pragma once

#include "platform/Notifications.h"
#include "platform/RunLoop.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tools {

// From its loading on, SIGINT and SIGTERM do nothing but end run(), at once when they came before it.
class BusModule {
public:
    virtual ~BusModule() = default;
    virtual bool isConnected() = 0;  // false: there is no session bus
    virtual platform::DistributedNotificationCenter& notifications() = 0;
    virtual platform::RunLoop& runLoop() = 0;
    // The process behind a notification's sender. Nothing when it has left the bus, or the bus cannot tell. Waits for
    // the bus to answer.
    virtual std::optional<std::int64_t> processOf(const std::string& sender) = 0;
    // Calls the handler for each message that the runtime broadcasts to modules, until the process ends.
    virtual void observeBroadcasts(std::function<void(std::string_view module, std::string_view message)> handler) = 0;
    // Handles events until stop(), a signal to end, or the end of the session bus.
    virtual void run() = 0;
    virtual void stop() = 0;
};

inline constexpr const char* kBusModuleFactoryName = "typeslatectl_busModule";
using BusModuleFactory = BusModule* (*)();  // one for the process

// Loads the module from where the product is installed. Null when it is not.
BusModule* findBusModule();
// The same for commands that cannot do without a bus. Throws Refusal when there is no module or no session bus.
BusModule& requireBus();

}  // namespace tools
