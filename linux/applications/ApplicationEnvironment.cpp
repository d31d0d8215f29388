#include "linux/applications/ApplicationEnvironment.h"

#include "linux/files/LinuxFiles.h"

#include <algorithm>
#include <cstdlib>

namespace linux {

using namespace platform;

namespace {

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::vector<std::string> split(std::string_view list) {
    std::vector<std::string> items;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(':'), list.size());
        if (end > 0) items.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return items;
}

void addUnique(std::vector<std::string>& folders, std::string folder) {
    if (std::ranges::find(folders, folder) == folders.end()) folders.push_back(std::move(folder));
}

std::vector<std::string> absoluteFolders(std::string_view list) {
    std::vector<std::string> folders;
    for (std::string& folder : split(list)) {
        while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
        if (folder.starts_with('/')) addUnique(folders, std::move(folder));
    }
    return folders;
}

std::vector<std::string> dataFolders(LinuxFiles& files) {
    std::vector<std::string> folders = {files.folder(FolderDomain::User, FolderKind::ApplicationSupport).value()};
    std::vector<std::string> shared = absoluteFolders(variable("XDG_DATA_DIRS"));
    if (shared.empty())
        for (const FolderDomain domain : {FolderDomain::Local, FolderDomain::Network})
            shared.push_back(files.folder(domain, FolderKind::ApplicationSupport).value());
    folders.insert(folders.end(), shared.begin(), shared.end());
    return folders;
}

std::string_view messagesLocale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const std::string_view value = variable(name); !value.empty()) return value;
    return {};
}

}  // namespace

ApplicationEnvironment ApplicationEnvironment::current() {
    LinuxFiles files;
    ApplicationEnvironment environment;
    // The local domain is a place of the system's own: what stands before it is the test root.
    std::string local = files.folder(FolderDomain::Local, FolderKind::Library).value();
    environment.testRoot = local.substr(0, local.rfind('/'));
    for (const std::string& folder : dataFolders(files))
        addUnique(environment.desktopEntryFolders, folder + "/applications");
    addUnique(environment.bundleFolders, files.expandTilde("~/Applications"));
    addUnique(environment.bundleFolders, environment.testRoot + "/Applications");
    environment.programFolders = absoluteFolders(variable("PATH"));
    if (environment.programFolders.empty()) environment.programFolders = {"/usr/local/bin", "/usr/bin", "/bin"};
    environment.locale = desktopEntryLocale(messagesLocale());
    environment.currentDesktops = split(variable("XDG_CURRENT_DESKTOP"));
    return environment;
}

std::optional<std::string> ApplicationEnvironment::desktopEntryIdentifier(std::string_view path) const {
    if (!path.ends_with(kDesktopEntrySuffix)) return {};
    path.remove_suffix(kDesktopEntrySuffix.size());
    for (const std::string& folder : desktopEntryFolders) {
        if (!path.starts_with(folder) || !path.substr(folder.size()).starts_with('/')) continue;
        std::string identifier(path.substr(folder.size() + 1));
        std::ranges::replace(identifier, '/', '-');
        return identifier;
    }
    return {};
}

}  // namespace linux
