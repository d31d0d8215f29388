#include "linux/applications/ApplicationEnvironment.h"

#include "linux/files/LinuxFiles.h"
#include "linux/files/Paths.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace linux {

using namespace platform;

namespace {

std::vector<std::string> listIn(const char* variable) {
    const char* value = std::getenv(variable);
    std::istringstream rest(value ? value : "");
    std::vector<std::string> items;
    for (std::string item; std::getline(rest, item, ':');)
        if (!item.empty()) items.push_back(item);
    return items;
}

void addUnique(std::vector<std::string>& folders, std::string folder) {
    if (std::ranges::find(folders, folder) == folders.end()) folders.push_back(std::move(folder));
}

std::vector<std::string> foldersIn(const char* variable) {
    std::vector<std::string> folders;
    for (const std::string& folder : listIn(variable))
        if (folder.starts_with('/')) addUnique(folders, withoutFinalSlashes(folder));
    return folders;
}

}  // namespace

ApplicationEnvironment ApplicationEnvironment::current() {
    LinuxFiles files;
    auto support = [&](FolderDomain domain) { return files.folder(domain, FolderKind::ApplicationSupport).value(); };
    std::vector<std::string> dataFolders = foldersIn("XDG_DATA_DIRS");
    if (dataFolders.empty()) dataFolders = {support(FolderDomain::Local), support(FolderDomain::Network)};
    dataFolders.insert(dataFolders.begin(), support(FolderDomain::User));

    ApplicationEnvironment environment;
    for (const std::string& folder : dataFolders) addUnique(environment.desktopEntryFolders, folder + "/applications");
    environment.testRoot = linux::testRoot();
    addUnique(environment.bundleFolders, files.expandTilde("~/Applications"));
    addUnique(environment.bundleFolders, environment.testRoot + "/Applications");
    environment.programFolders = foldersIn("PATH");
    if (environment.programFolders.empty()) environment.programFolders = {"/usr/local/bin", "/usr/bin", "/bin"};
    environment.currentDesktops = listIn("XDG_CURRENT_DESKTOP");
    return environment;
}

}  // namespace linux
