#include "tools/BusModule.h"

#include "tools/Refusal.h"

#include <dlfcn.h>

#include <filesystem>

namespace tools {

BusModule& loadBusModule() {
    std::error_code error;
    auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    std::string path = (program.parent_path().parent_path() / "lib/typeslate/typeslatectl-bus.so").string();
    void* code = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    auto factory = code ? reinterpret_cast<BusModuleFactory>(dlsym(code, kBusModuleFactoryName)) : nullptr;
    if (!factory) throw Refusal{"the part for the session bus is not installed (" + path + ")"};
    return *factory();
}

}  // namespace tools
