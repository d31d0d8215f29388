#include "tools/commands/Commands.h"

#include "linux/documents/Json.h"
#include "propertylist/Date.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/headless/BusModule.h"

#include <cstdio>

using namespace platform;
using namespace propertylist;

namespace tools {
namespace {

// Ends the watch when nobody reads it any more.
void printMessage(const PropertyList& message, BusModule& bus) {
    std::string line = linux::jsonText(message, linux::JsonLayout::OneLine) + "\n";
    std::fwrite(line.data(), 1, line.size(), stdout);
    if (std::fflush(stdout) != 0) bus.stop();
}

void watch() {
    BusModule& bus = requireBus();
    auto stamp = [&bus] { return iso8601FromDate(bus.runLoop().now()); };
    auto observation = bus.notifications().addObserver("", "", Delivery::Each, [&](const Notification& notification) {
        MutableDictionary line(PropertyList::dictionary({{"time", stamp()},
                                                         {"kind", "notification"},
                                                         {"name", notification.name},
                                                         {"object", notification.object},
                                                         {"userInfo", notification.userInfo},
                                                         {"deliverImmediately", notification.deliverImmediately},
                                                         {"sender", notification.sender}}));
        if (auto process = bus.processOf(notification.sender)) line.set("senderProcess", *process);
        printMessage(std::move(line).freeze(), bus);
    });
    bus.observeBroadcasts([&](std::string_view module, std::string_view message) {
        printMessage(PropertyList::dictionary(
                         {{"time", stamp()}, {"kind", "broadcast"}, {"module", module}, {"message", message}}),
                     bus);
    });
    std::fprintf(stderr, "typeslatectl: %s\n", localized("watching; Ctrl-C ends it").c_str());
    bus.run();
    flushOutput();
    if (!bus.isConnected()) throw refused("the session bus has gone");
}

}  // namespace

void addWatchCommand(CLI::App& app) {
    app.add_subcommand("watch", localized("Print each notification and broadcast as a line of JSON"))->callback(watch);
}

}  // namespace tools
