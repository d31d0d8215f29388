#include "linux/processes/SessionLeader.h"

#include <systemd/sd-bus.h>

namespace linux {

using namespace platform;

// Debian 12's sd-login has no sd_session_get_leader() yet.
std::optional<ProcessID> sessionLeader() {
    constexpr std::uint64_t kPatience = 1'000'000;  // microseconds
    sd_bus* bus = nullptr;
    std::uint32_t leader = 0;
    if (sd_bus_open_system(&bus) >= 0) {
        sd_bus_set_method_call_timeout(bus, kPatience);
        sd_bus_get_property_trivial(bus, "org.freedesktop.login1", "/org/freedesktop/login1/session/auto",
                                    "org.freedesktop.login1.Session", "Leader", nullptr, SD_BUS_TYPE_UINT32, &leader);
    }
    sd_bus_close_unref(bus);
    return leader > 0 ? std::optional<ProcessID>(leader) : std::nullopt;
}

}  // namespace linux
