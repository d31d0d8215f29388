#include "tools/headless/BusModule.h"

#include "linux/system/Installation.h"
#include "tools/Localized.h"

#include <dlfcn.h>

namespace tools {
namespace {

std::string modulePath() { return linux::installedPath("typeslatectl-bus.so"); }

}  // namespace

BusModule* findBusModule() {
    void* code = dlopen(modulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
    auto factory = code ? reinterpret_cast<BusModuleFactory>(dlsym(code, kBusModuleFactoryName)) : nullptr;
    return factory ? factory() : nullptr;
}

BusModule& requireBus() {
    BusModule* bus = findBusModule();
    if (!bus) throw refused("the part for the session bus is not installed (%@)", modulePath());
    if (!bus->isConnected()) throw refused("there is no session bus");
    return *bus;
}

}  // namespace tools
