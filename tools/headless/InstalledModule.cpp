#include "tools/headless/InstalledModule.h"

#include "linux/system/Installation.h"

#include <dlfcn.h>

namespace tools {

std::string InstalledModule::path() const { return linux::installedPath(file); }

void* InstalledModule::symbol() const {
    void* code = dlopen(path().c_str(), RTLD_NOW | RTLD_LOCAL);
    return code ? dlsym(code, factoryName) : nullptr;
}

}  // namespace tools
