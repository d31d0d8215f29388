// System-wide notifications: a name, an object string and optional user information, sent to every process that
// observes the name.
#pragma once

#include "platform/PlatformTypes.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

struct Notification {
    std::string name;
    std::string object;
    PropertyList userInfo;            // a dictionary, or nothing
    bool deliverImmediately = false;  // as it was posted
    std::string sender = {};          // the transport's name for the process that posted it; empty where it has none
};

// Which notifications an observer is told of.
enum class Delivery {
    Each,    // in the order in which they were posted
    Latest,  // the last of those that arrived since it was told, at most once a frame: for what shows a state
};

// Stops observing when it is destroyed. It must not outlive its notification centre.
class Observation {
public:
    virtual ~Observation() = default;
};

class DistributedNotificationCenter {
public:
    virtual ~DistributedNotificationCenter() = default;
    // Never blocks and never fails to the caller; without a transport the notification is dropped, and the log says so
    // once. User information that the transport cannot carry (docs/messages.md) is left out, with a line in the log.
    virtual void post(std::string_view name, std::string_view object, const PropertyList& userInfo,
                      bool deliverImmediately) = 0;
    // The handler runs on the main thread. An empty name observes every name, an empty object every object.
    virtual std::unique_ptr<Observation> addObserver(std::string_view name, std::string_view object, Delivery delivery,
                                                     std::function<void(const Notification&)> handler) = 0;
};

}  // namespace platform
