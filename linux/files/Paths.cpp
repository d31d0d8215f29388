#include "linux/files/Paths.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace linux {
namespace {

bool isBelow(std::string_view path, std::string_view folder) {
    if (folder == "/") return true;
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string folderIn(const char* variable, std::string_view belowHome) {
    std::string folder = absolutePathIn(variable);
    return folder.empty() ? joined(homeFolder(), belowHome) : folder;
}

}  // namespace

bool isUsablePath(std::string_view path) { return !path.empty() && path.find('\0') == std::string_view::npos; }

std::string withoutFinalSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

std::string_view folderOf(std::string_view path) {
    std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return ".";
    return path.substr(0, slash == 0 ? 1 : slash);
}

std::string_view nameOf(std::string_view path) { return path.substr(path.rfind('/') + 1); }

std::string joined(std::string_view folder, std::string_view rest) {
    std::string path(folder);
    if (path.empty() || path.back() != '/') path += '/';
    return path.append(rest);
}

std::string absolutePathIn(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value == '/' ? withoutFinalSlashes(value) : "";
}

std::string homeFolder() {
    if (std::string home = absolutePathIn("HOME"); !home.empty()) return home;
    const passwd* user = ::getpwuid(::getuid());
    return user && user->pw_dir && *user->pw_dir ? withoutFinalSlashes(user->pw_dir) : "/";
}

std::string configurationFolder() { return folderIn("XDG_CONFIG_HOME", ".config"); }

std::string userDataFolder() { return folderIn("XDG_DATA_HOME", ".local/share"); }

std::string runtimeFolder() {
    std::string folder = absolutePathIn("XDG_RUNTIME_DIR");
    struct stat status;
    bool isFolder = !folder.empty() && ::stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    return isFolder ? folder : "";
}

std::string testRoot() {
    std::string root = absolutePathIn("TYPESLATE_ROOT");
    return root == "/" ? "" : root;
}

std::string belowTestRoot(const std::string& path) {
    std::string root = testRoot(), home = homeFolder();
    bool staysWhereItIs = root.empty() || isBelow(path, root) || (home != "/" && isBelow(path, home));
    return staysWhereItIs ? path : root + path;
}

}  // namespace linux
