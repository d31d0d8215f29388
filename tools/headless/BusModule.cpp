#include "tools/headless/BusModule.h"

#include "tools/Localized.h"
#include "tools/headless/InstalledModule.h"

namespace tools {
namespace {

constexpr InstalledModule kModule{"typeslatectl-bus.so", kBusModuleFactoryName};

}  // namespace

BusModule* findBusModule() {
    auto factory = kModule.factory<BusModuleFactory>();
    return factory ? factory() : nullptr;
}

BusModule& requireBus() {
    BusModule* bus = findBusModule();
    if (!bus) throw refused("the part for the session bus is not installed (%@)", kModule.path());
    if (!bus->isConnected()) throw refused("there is no session bus");
    return *bus;
}

}  // namespace tools
