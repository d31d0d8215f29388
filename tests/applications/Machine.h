// A machine of its own for a test: a home, data folders, programs and a clock that only the test moves.
#pragma once

#include "linux/applications/LinuxApplications.h"
#include "tests/support/Check.h"

#include <chrono>
#include <filesystem>

namespace fs = std::filesystem;

inline std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += word + "|";
    return text;
}

class Machine {
public:
    Machine() {
        using linux::ApplicationEnvironment;
        environment.desktopEntryFolders = {folder_ / "home/data/applications", folder_ / "usr/share/applications"};
        environment.bundleFolders = {folder_ / "home/Applications", folder_ / "Applications"};
        environment.programFolders = {folder_ / "bin"};
        fs::create_directories(folder_ / "bin");
    }

    linux::LinuxApplications applications() {
        return linux::LinuxApplications(environment, [this] { return now_; });
    }
    void pass(std::chrono::milliseconds time) { now_ += time; }

    std::string path(std::string_view relative) const { return folder_ / relative; }
    std::string relative(const std::optional<std::string>& path) const {
        return path ? path->substr(folder_.path().size() + 1) : "none";
    }
    void write(std::string_view relative, std::string_view bytes) const { check::writeFile(path(relative), bytes); }
    // In the user's folder with "~/" in front, else in the system's.
    std::string entryPath(std::string_view name) const {
        return name.starts_with("~/") ? "home/data/applications/" + std::string(name.substr(2))
                                      : "usr/share/applications/" + std::string(name);
    }
    void entry(std::string_view name, std::string_view keys = "Name=N\nExec=prog\n") const {
        write(entryPath(name), "[Desktop Entry]\nType=Application\n" + std::string(keys));
    }
    void program(std::string_view relative, bool isExecutable = true) const {
        write(relative, "#!/bin/sh\n");
        fs::permissions(path(relative), isExecutable ? fs::perms::owner_all : fs::perms::owner_read);
    }
    void bundle(std::string_view folder, std::string_view keys) const {
        write(std::string(folder) + "/Contents/Info.plist",
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>" + std::string(keys) +
                  "</dict></plist>");
    }

    linux::ApplicationEnvironment environment;

private:
    check::TemporaryFolder folder_;
    std::chrono::steady_clock::time_point now_{};
};
