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
        environment.desktopEntryFolders = {folder_ / "home/data/applications", folder_ / "usr/share/applications"};
        environment.bundleFolders = {folder_ / "home/Applications", folder_ / "Applications"};
        environment.programFolders = {folder_ / "bin"};
        fs::create_directories(folder_ / "bin");
    }

    // "~" is the user's folder of entries, ":" the system's.
    std::string path(std::string name) const {
        if (name.starts_with("~/")) name = "home/data/applications" + name.substr(1);
        if (name.starts_with(":/")) name = "usr/share/applications" + name.substr(1);
        return folder_ / name;
    }
    // The way back.
    std::string shortened(const std::optional<std::string>& path) const {
        if (!path) return "none";
        for (const char* name : {"~/", ":/", ""})
            if (path->starts_with(this->path(name))) return name + path->substr(this->path(name).size());
        return *path;
    }
    void write(const std::string& name, std::string_view bytes) const { check::writeFile(path(name), bytes); }
    void entry(const std::string& name, const std::string& keys = "Name=N\nExec=prog\n") const {
        write(name, "[Desktop Entry]\nType=Application\n" + keys);
    }

    linux::ApplicationEnvironment environment;

private:
    check::TemporaryFolder folder_;
};
