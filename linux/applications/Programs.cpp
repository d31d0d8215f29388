#include "linux/applications/Programs.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>

namespace linux {

namespace {

std::string_view baseName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

}  // namespace

bool isExecutableFile(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

std::size_t programIndex(const std::vector<std::string>& words) {
    if (words.empty() || baseName(words.front()) != "env") return 0;
    constexpr std::string_view kOptionsWithValue[] = {"-u", "--unset", "-C", "--chdir"};
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (std::ranges::find(kOptionsWithValue, words[i]) != std::end(kOptionsWithValue))
            ++i;
        else if (!words[i].starts_with('-') && words[i].find('=') == std::string::npos)
            return i;
    }
    return words.size();
}

bool isWineProgram(std::string_view program) {
    std::string name(baseName(program));
    auto matches = [&](const char* pattern) { return ::fnmatch(pattern, name.c_str(), 0) == 0; };
    // Not "winetricks" or "winefish".
    constexpr const char* kPatterns[] = {"wine",           "wine-*",           "wine[0-9]",
                                         "wine[0-9][0-9]", "wine[0-9][0-9]-*", "wineconsole",
                                         "winefile",       "*.[eE][xX][eE]"};
    return std::ranges::any_of(kPatterns, matches);
}

bool isLauncherProgram(std::string_view program) {
    constexpr std::string_view kLaunchers[] = {"bash",   "dash",       "dbus-launch", "dex",  "flatpak",  "gio",
                                               "gjs",    "gtk-launch", "java",        "mono", "perl",     "pkexec",
                                               "python", "sh",         "snap",        "sudo", "xdg-open", "zsh"};
    std::string_view name = baseName(program);
    // "python3.11" is a python.
    name = name.substr(0, name.find_last_not_of("0123456789.") + 1);
    return std::ranges::find(kLaunchers, name) != std::end(kLaunchers);
}

std::string findProgram(const std::string& program, const ApplicationEnvironment& environment) {
    if (program.starts_with('/')) {
        if (std::string below = environment.testRoot + program; isExecutableFile(below)) return below;
        return isExecutableFile(program) ? program : "";
    }
    if (program.empty() || program.find('/') != std::string::npos) return {};
    for (const std::string& folder : environment.programFolders)
        if (std::string path = folder + "/" + program; isExecutableFile(path)) return path;
    return {};
}

}  // namespace linux
