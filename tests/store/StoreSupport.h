// What the store's tests share: a file access that misbehaves on command, a log that remembers, users and processes.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "linux/preferences/DiskPreferences.h"
#include "propertylist/Codec.h"
#include "tests/support/Check.h"

namespace check {

using linux::DiskPreferences;
using linux::FileAccess;
using platform::PropertyList;

struct FaultyFileAccess : FileAccess {
    // Called with the number of the call, from 1; see FileAccess::intercept.
    std::function<int(Call, std::size_t&, int)> hook;
    int calls = 0;
    int intercept(Call call, std::size_t& size) override {
        ++calls;
        return hook ? hook(call, size, calls) : 0;
    }
};

inline const std::string kDomain = "com.example.store";

// A service of its own, as another process would have it.
struct Store {
    RecordingLog log;
    DiskPreferences preferences;
    explicit Store(const std::string& folder, FileAccess& files = FileAccess::system())
        : preferences(folder, log, files) {}
    void set(std::string_view key, PropertyList value) { preferences.setValue(key, std::move(value), kDomain); }
    bool synchronize() { return preferences.synchronize(kDomain); }
    PropertyList operator[](std::string_view key) { return preferences.copyValue(key, kDomain); }
    bool write(std::string_view key, PropertyList value) {
        set(key, std::move(value));
        return synchronize();
    }
};

// Starts the body in a process of its own, as a user without rights where this one is root.
inline pid_t start(const std::function<bool()>& body, bool asNobody = false) {
    pid_t child = fork();
    if (child != 0) return child;
    constexpr uid_t kNobody = 65534;
    if (asNobody && geteuid() == 0 && (setresgid(kNobody, kNobody, kNobody) || setresuid(kNobody, kNobody, kNobody)))
        _exit(2);
    _exit(body() ? 0 : 1);
}
inline bool succeeded(pid_t child) {
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}
inline bool inAnotherProcess(const std::function<bool()>& body, bool asNobody = false) {
    return succeeded(start(body, asNobody));
}

}  // namespace check
