// The real files below a temporary folder, with a count of what is asked and a way to say no.
#pragma once

#include "linux/files/LinuxFiles.h"
#include "tests/support/Check.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace fontcatalogtest {

class Files final : public platform::FileServices {
public:
    bool fileExists(std::string_view path) override {
        ++existenceTests;
        if (!closed.empty() && path.starts_with(closed)) return false;
        std::string lower(path);  // in the last component only: the folders' own names may have capitals
        for (std::size_t i = lower.rfind('/'); i < lower.size(); ++i)
            if (lower[i] >= 'A' && lower[i] <= 'Z') lower[i] |= 0x20;
        return real.fileExists(path) || (ignoresCase && real.fileExists(lower));
    }
    std::unique_ptr<platform::FolderIterator> openFolder(std::string_view path, platform::FolderDetail detail,
                                                         platform::OSStatus& status,
                                                         const platform::ItemFilter& isWanted) override {
        ++listings;
        status = platform::kPermissionErr;
        return unreadable.contains(path) ? nullptr : real.openFolder(path, detail, status, isWanted);
    }
    std::shared_ptr<const std::string> readFile(std::string_view path, std::size_t most,
                                                platform::OSStatus& status) override {
        status = platform::kPermissionErr;
        return unreadable.contains(path) ? nullptr : real.readFile(path, most, status);
    }
    std::string expandTilde(std::string_view path) override { return real.expandTilde(path); }
    std::optional<std::string> folder(platform::FolderDomain domain, platform::FolderKind kind) override {
        return real.folder(domain, kind);
    }

    linux::LinuxFiles real;
    int existenceTests = 0, listings = 0;
    bool ignoresCase = false;
    std::set<std::string, std::less<>> unreadable;
    std::string closed;  // a folder that may be listed, but not entered
};

// A machine with nothing on it: home folder, system folders and Wine prefix are in a temporary folder.
struct Machine {
    check::TemporaryFolder temporary;
    check::ScopedEnvironment root{"TYPESLATE_ROOT", temporary.path().c_str()};
    check::ScopedEnvironment home{"HOME", (temporary / "home").c_str()};
    check::ScopedEnvironment data{"XDG_DATA_HOME", nullptr};
    check::ScopedEnvironment wine{"WINEPREFIX", nullptr};
    const std::string user = temporary / "home/.local/share/Adobe/", local = temporary / "usr/local/share/Adobe/",
                      network = temporary / "usr/share/Adobe/",
                      classic = temporary / "home/.wine/drive_c/Program Files/Common Files/Adobe/";

    static void write(const std::string& path, std::string_view text = "") { check::writeFile(path, text); }
    // A line each: "file", "link > target" or "pipe |", below the folder.
    static void fill(const std::string& folder, const std::string& lines) {
        for (const std::string& line : check::linesIn(lines)) {
            const std::size_t end = std::min({line.find(" > "), line.find(" |"), line.size()});
            const std::string path = folder + line.substr(0, end);
            write(path);
            if (end < line.size()) std::filesystem::remove(path);
            if (line.ends_with(" |"))
                ::mkfifo(path.c_str(), 0600);
            else if (end < line.size())
                std::filesystem::create_symlink(line.substr(end + 3), path);
        }
    }
};

}  // namespace fontcatalogtest
