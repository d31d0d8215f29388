#include "tools/Input.h"

#include "tools/Refusal.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace tools {
namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

}  // namespace

std::string readInput(const std::string& name, std::size_t most) {
    File file(name == kStandardStream ? stdin : std::fopen(name.c_str(), "rb"), std::fclose);
    if (!file) throw Refusal(name + ": " + std::strerror(errno));
    std::string bytes;
    char buffer[1 << 16];
    while (std::size_t count = std::fread(buffer, 1, sizeof buffer, file.get())) {
        if (count > most - bytes.size()) throw Refusal(name + ": " + std::strerror(EFBIG));
        bytes.append(buffer, count);
    }
    if (std::ferror(file.get())) throw Refusal(name + ": " + std::strerror(errno));
    return bytes;
}

bool isStandardOutput(const std::string& name) {
    struct stat named, own;
    return name == kStandardStream || (::stat(name.c_str(), &named) == 0 && ::fstat(STDOUT_FILENO, &own) == 0 &&
                                       named.st_dev == own.st_dev && named.st_ino == own.st_ino);
}

}  // namespace tools
