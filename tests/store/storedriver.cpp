// storedriver FOLDER DOMAIN KEY VALUE: sets one value and synchronizes once, between two calls of getppid() that mark
// the place in a trace of system calls. When refused, synchronizes once more if a line comes from standard input. Exit
// status 0 when stored, 1 when refused; log lines go to standard error.
#include <unistd.h>

#include <cstdio>

#include "linux/preferences/DiskPreferences.h"

namespace {
struct StandardErrorLog : platform::Log {
    void write(std::string_view line) override {
        std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
    }
};
}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) return 2;
    StandardErrorLog log;
    linux::DiskPreferences preferences(argv[1], log);
    preferences.setValue(argv[3], argv[4], argv[2]);
    (void)getppid();
    bool stored = preferences.synchronize(argv[2]);
    (void)getppid();
    if (!stored && std::getchar() != EOF) stored = preferences.synchronize(argv[2]);
    return stored ? 0 : 1;
}
