// What typeslatectl needs of the session bus, in a module that is loaded only by the commands that use it: the others
// start without the toolkit's libraries.
#pragma once

#include "platform/Notifications.h"
#include "platform/RunLoop.h"

#include <functional>
#include <string_view>

namespace tools {

class BusModule {
public:
    virtual ~BusModule() = default;
    virtual bool isConnected() = 0;  // false: there is no session bus
    virtual platform::DistributedNotificationCenter& notifications() = 0;
    virtual platform::RunLoop& runLoop() = 0;
    // Calls the handler for each message that the runtime broadcasts to modules, until the process ends.
    virtual void observeBroadcasts(std::function<void(std::string_view module, std::string_view message)> handler) = 0;
    // Handles events until stop() or a signal to end (SIGINT, SIGTERM).
    virtual void run() = 0;
    virtual void stop() = 0;
};

inline constexpr const char* kBusModuleFactoryName = "typeslatectl_busModule";
using BusModuleFactory = BusModule* (*)();  // one for the process, never deleted

// Loads the module from "../lib/typeslate" beside the program's folder. Throws Refusal when it is not installed.
BusModule& loadBusModule();

}  // namespace tools
