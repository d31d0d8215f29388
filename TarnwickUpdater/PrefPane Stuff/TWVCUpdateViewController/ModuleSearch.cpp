// Finding the module that the controls are for.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/VersionChecking.h"
#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"
#include "propertylist/ASCII.h"

using namespace platform;
using twvc::UpdateServices;
using Controller = TWVCUpdateViewController_V100;

namespace {

constexpr std::size_t kBatch = 40;
constexpr std::string_view kEnabledFolder = "Plinthworks", kDisabledFolder = "Plinthworks (Disabled)";

bool hasIdentifier(const UpdateServices& services, const std::string& path, std::string_view wanted) {
    auto bundle = services.bundles.openBundle(path);
    std::string identifier = bundle ? twvc::moduleIdentifier(*bundle) : std::string();
    if (identifier.empty()) {
        twvc::log(services, "This bundle has no ID! %@", path);
        return false;
    }
    if (twvc::gLogStuff) twvc::log(services, "%@ vs %@", wanted, identifier);
    return propertylist::equalIgnoringASCIICase(identifier, wanted);
}

}  // namespace

std::unique_ptr<Bundle> Controller::findPlinthWithBundleID_inDomain_withPlinthFolderName(const UpdateServices& services,
                                                                                         std::string_view bundleID,
                                                                                         FolderDomain domain,
                                                                                         std::string_view folderName) {
    auto library = services.files.folder(domain, FolderKind::Library);
    if (!library) return nullptr;
    std::string path = *library + "/" + std::string(folderName);
    OSStatus status = kNoErr;
    auto folder = services.files.openFolder(path, FolderDetail::Everything, status);
    if (!folder) return nullptr;
    std::vector<FolderEntry> entries;
    for (folder->nextBatch(kBatch, entries); !entries.empty(); folder->nextBatch(kBatch, entries))
        for (const FolderEntry& entry : entries) {
            if (entry.kind != ItemKind::Folder || entry.isInvisible) continue;
            std::string module = path + "/" + entry.name;
            if (hasIdentifier(services, module, bundleID)) return services.bundles.openBundle(module);
        }
    return nullptr;
}

std::unique_ptr<Bundle> Controller::findPlinth(const UpdateServices& services, std::string_view bundleID) {
    for (std::string_view folder : {kEnabledFolder, kDisabledFolder})
        for (FolderDomain domain : {FolderDomain::User, FolderDomain::Local})
            if (auto bundle = findPlinthWithBundleID_inDomain_withPlinthFolderName(services, bundleID, domain, folder))
                return bundle;
    return nullptr;
}
