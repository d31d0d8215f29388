#include "host/kcm/BundlePlace.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

namespace kcm {

std::string bundlePlace() {
    if (const char* wish = std::getenv("TYPESLATE_PREFPANE"); wish && *wish) return wish;
    Dl_info plugin{};
    dladdr(reinterpret_cast<void*>(&bundlePlace), &plugin);
    std::filesystem::path file(plugin.dli_fname ? plugin.dli_fname : "");
    return (file.parent_path() / BUNDLE_FROM_PLUGIN).lexically_normal();
}

}  // namespace kcm
