#include "linux/applications/ProgramLookup.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace linux {

namespace {

bool isExecutableFile(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

}  // namespace

const std::string& ProgramLookup::find(std::string_view program) {
    if (const auto known = known_.find(program); known != known_.end()) return known->second;
    return known_.emplace(program, search(program)).first->second;
}

bool ProgramLookup::isExecutable(std::string_view path) {
    // A path as it stands and one below the test root are different questions.
    const std::string key = std::string(1, '\0').append(path);
    if (const auto known = known_.find(key); known != known_.end()) return !known->second.empty();
    const std::string plain(path);
    return !known_.emplace(key, isExecutableFile(plain) ? plain : "").first->second.empty();
}

std::string ProgramLookup::search(std::string_view program) const {
    if (program.empty()) return {};
    const std::string name(program);
    if (name.front() == '/') {
        if (!environment_.testRoot.empty() && isExecutableFile(environment_.testRoot + name))
            return environment_.testRoot + name;
        return isExecutableFile(name) ? name : "";
    }
    if (name.find('/') != std::string::npos) return {};
    for (const std::string& folder : environment_.programFolders)
        if (std::string path = folder + "/" + name; isExecutableFile(path)) return path;
    return {};
}

}  // namespace linux
