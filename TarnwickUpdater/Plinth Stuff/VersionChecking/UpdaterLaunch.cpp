#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdaterLaunch.h"

#include "TarnwickUpdater/Plinth Stuff/VersionChecking/VersionChecking.h"

using namespace platform;

namespace twvc {
namespace {

constexpr std::size_t kLongestFileName = 255;  // bytes

// Nothing when no file can have that name.
std::optional<std::string> lockFileName(std::string_view identifier) {
    std::string name = std::string(identifier) + ".updater.lock";
    bool isPossible = name.size() <= kLongestFileName && name.find_first_of(std::string_view("/\0", 2)) == name.npos;
    return isPossible ? std::optional(name) : std::nullopt;
}

std::optional<FSRef> fileReference(FileServices& files, const std::string& path) {
    OSStatus status = kNoErr;
    auto folder = files.openFolder(path, FolderDetail::Names, status);
    if (!folder) return std::nullopt;
    ItemIdentity identity = folder->identity();
    return FSRef{path, identity.device, identity.inode};
}

// While the lock is held. What goes wrong here is told to the log only.
void launch(const UpdateServices& services, const Bundle& bundle, std::string_view identifier, FSRef* outLaunched) {
    auto updater = updaterOf(bundle);
    auto reference = updater ? fileReference(services.files, *updater) : std::nullopt;
    if (!reference || bundle.path().empty()) return;
    OSStatus status = services.launcher.launchApplication(*updater, bundle.path());
    if (status != kNoErr)
        return log(services, "[%@] Could not launch the updater (%@) due to error %d occurring. %s\n", gBundleName,
                   *updater, status, statusText(status));
    if (outLaunched) *outLaunched = *reference;
    log(services, "[%@] Launched the updater at %@\n", gBundleName, *updater);
    services.preferences.synchronize(identifier);
}

OSStatus unlock(const UpdateServices& services, CreatedFile& lock, const std::string& name) {
    OSStatus status = lock.remove();
    if (status != kNoErr)
        log(services, "[%@] Could not delete the updater lock file (%@) due to error %d. %s\n", gBundleName, name,
            status, statusText(status));
    return status;
}

OSStatus launchUnderLock(const UpdateServices& services, const Bundle& bundle, std::string_view identifier,
                         const std::string& folder, const std::string& name, FSRef* outLaunched) {
    OSStatus status = kNoErr;
    auto lock = services.launcher.createFile(folder + "/" + name, status);
    if (!lock) {
        log(services,
            "[%@] Could not run the updater as the updater lock file (%@) is already in existence. Someone else is "
            "updating. %s\n",
            gBundleName, name, statusText(status));
        return status;
    }
    launch(services, bundle, identifier, outLaunched);
    return unlock(services, *lock, name);
}

}  // namespace

std::optional<std::string> updaterLockPath(const UpdateServices& services, std::string_view identifier) {
    auto folder = services.files.folder(FolderDomain::System, FolderKind::Temporary);
    auto name = lockFileName(identifier);
    return folder && name ? std::optional(*folder + "/" + *name) : std::nullopt;
}

std::optional<std::string> updaterOf(const Bundle& module) { return module.resourcePath("Tarnwick Updater", "app"); }

OSStatus runUpdater(const UpdateServices& services, const Bundle* bundle, std::optional<std::string_view> identifier,
                    FSRef* outLaunchedUpdater) {
    if (!bundle || !identifier) return kParamErr;
    if (gBundleName.empty()) gBundleName = moduleName(*bundle).stringValue();
    log(services, "[%@] Checking for updated versions of %@ (%@)\n", gBundleName, gBundleName, *identifier);
    auto folder = services.files.folder(FolderDomain::System, FolderKind::Temporary);
    if (!folder) return kFileNotFound;
    if (OSStatus status = services.launcher.makeFolder(*folder); status != kNoErr) return status;
    auto name = lockFileName(*identifier);
    if (!name) return kBadName;
    return launchUnderLock(services, *bundle, *identifier, *folder, *name, outLaunchedUpdater);
}

}  // namespace twvc
