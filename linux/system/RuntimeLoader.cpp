#include "linux/system/RuntimeLoader.h"

namespace linux {

using namespace platform;

namespace {

constexpr const char* kRuntimeIdentifier = "com.tarnwick.plinth";
constexpr const char* kRuntimeLibrary = "libplinth.so";
constexpr const char* kEntryPoint = "PlinthMessageBroadcast";

std::unique_ptr<Bundle> installedRuntime(FileServices& files, FolderDomain domain) {
    auto library = files.folder(domain, FolderKind::Library);
    if (!library) return nullptr;
    auto bundle = FolderBundle::open(*library + "/Frameworks/Plinth.framework");
    bool isRuntime = bundle && bundle->identifier() == kRuntimeIdentifier && bundle->functionNamed(kEntryPoint);
    return isRuntime ? std::move(bundle) : nullptr;
}

}  // namespace

std::unique_ptr<Bundle> loadRuntime(FileServices& files) {
    for (FolderDomain domain : {FolderDomain::User, FolderDomain::Local})
        if (auto runtime = installedRuntime(files, domain)) return runtime;
    return LibraryBundle::load(kRuntimeLibrary, kRuntimeIdentifier);
}

}  // namespace linux
