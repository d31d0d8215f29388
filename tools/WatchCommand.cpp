#include "tools/WatchCommand.h"

#include "platform/Date.h"
#include "tools/BusModule.h"
#include "tools/Json.h"
#include "tools/Refusal.h"

#include <cstdio>

using namespace platform;

namespace tools {
namespace {

void printLine(const PropertyList& message) {
    std::string line = jsonText(message, JsonLayout::OneLine) + "\n";
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}

void watch() {
    BusModule& bus = loadBusModule();
    if (!bus.isConnected()) throw Refusal{"there is no session bus to watch"};
    auto stamp = [&bus] { return iso8601FromDate(bus.runLoop().now()); };
    auto observation = bus.notifications().addObserver("", "", [&](const Notification& notification) {
        MutableDictionary line(PropertyList::dictionary({{"time", stamp()},
                                                         {"kind", "notification"},
                                                         {"name", notification.name},
                                                         {"object", notification.object}}));
        line.set("userInfo", notification.userInfo);
        printLine(std::move(line).freeze());
        if (std::ferror(stdout)) bus.stop();
    });
    bus.observeBroadcasts([&](std::string_view module, std::string_view message) {
        printLine(PropertyList::dictionary(
            {{"time", stamp()}, {"kind", "broadcast"}, {"module", module}, {"message", message}}));
        if (std::ferror(stdout)) bus.stop();
    });
    std::fputs("typeslatectl: watching; Ctrl-C ends it\n", stderr);
    bus.run();
}

}  // namespace

void addWatchCommand(CLI::App& app) {
    app.add_subcommand("watch", "Print each notification and broadcast as a line of JSON")->callback(watch);
}

}  // namespace tools
