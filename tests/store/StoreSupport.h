// What the store's tests share: a file access that misbehaves on command, a log that remembers, users and processes.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "linux/preferences/DiskPreferences.h"
#include "propertylist/Codec.h"
#include "tests/support/Check.h"

namespace check {

namespace fs = std::filesystem;
using linux::DiskPreferences;
using linux::FileAccess;
using platform::PreferenceReport;
using platform::PropertyList;
using Call = FileAccess::Call;

inline const std::string kDomain = "com.example.store";
inline const PropertyList kTheirs = PropertyList::dictionary({{"theirs", 1}});

struct FaultyFileAccess : FileAccess {
    // Called before each call with its number, from 1; see FileAccess::intercept.
    std::function<int(Call, std::size_t&, int)> hook;
    int calls = 0;
    void failAlways(Call which, int error) {
        hook = [=](Call call, std::size_t&, int) { return call == which ? -error : 0; };
    }
    int intercept(Call call, std::size_t& size) override {
        ++calls;
        return hook ? hook(call, size, calls) : 0;
    }
};

// Where a domain is: in a folder that nobody has made yet.
struct Place {
    TemporaryFolder temporary;
    std::string folder = temporary / "a/b", path = folder + "/" + kDomain + ".plist",
                lock = folder + "/." + kDomain + ".plist.lock", leftover = folder + "/." + kDomain + ".plist.tmp";
};

// A service of its own, as another process would have it.
struct Store {
    RecordingLog log;
    DiskPreferences preferences;
    explicit Store(const std::string& folder, FileAccess& files = FileAccess::system())
        : preferences(folder, log, files) {}
    void set(std::string_view key, PropertyList value) { preferences.setValue(key, std::move(value), kDomain); }
    bool synchronize() { return preferences.synchronize(kDomain); }
    bool isReadable() { return preferences.isReadable(kDomain); }
    PropertyList operator[](std::string_view key) { return preferences.copyValue(key, kDomain); }
    bool write(std::string_view key, PropertyList value) {
        set(key, std::move(value));
        return synchronize();
    }
};

inline std::string encoded(const PropertyList& value) {
    return encodePropertyList(value, propertylist::PropertyListFormat::Binary);
}
// Without those that start with a dot.
inline std::vector<std::string> filesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        if (std::string name = entry.path().filename(); !name.starts_with(".")) names.push_back(std::move(name));
    return names;
}

// Starts the body in a process of its own, as a user without rights where this one is root. It ends well when the body
// answers true and no check in it fails.
inline pid_t start(const std::function<bool()>& body, bool asNobody = false) {
    pid_t child = fork();
    if (child != 0) return child;
    constexpr uid_t kNobody = 65534;
    if (asNobody && geteuid() == 0 && (setresgid(kNobody, kNobody, kNobody) || setresuid(kNobody, kNobody, kNobody)))
        _exit(2);
    int before = failures();
    _exit(body() && failures() == before ? 0 : 1);
}
inline bool succeeded(pid_t child) {
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}
inline bool inAnotherProcess(const std::function<bool()>& body, bool asNobody = false) {
    return succeeded(start(body, asNobody));
}

}  // namespace check
