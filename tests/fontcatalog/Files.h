// The real files below a temporary folder, with a count of what is asked and a way to say no.
#pragma once

#include "linux/files/LinuxFiles.h"
#include "tests/support/Check.h"

#include <filesystem>
#include <map>
#include <set>
#include <string>

namespace fontcatalogtest {

class Files final : public platform::FileServices {
public:
    bool fileExists(std::string_view path) override {
        ++existenceTests;
        if (!closed.empty() && path.starts_with(closed)) return false;
        if (real.fileExists(path)) return true;
        return ignoresCase && real.fileExists(lowerCase(path));
    }
    std::unique_ptr<platform::FolderIterator> openFolder(std::string_view path, platform::FolderDetail detail,
                                                         platform::OSStatus& status) override {
        ++listings;
        status = platform::kPermissionErr;
        return unreadable.contains(path) ? nullptr : real.openFolder(path, detail, status);
    }
    std::shared_ptr<const std::string> readFile(std::string_view path) override {
        return unreadable.contains(path) ? nullptr : real.readFile(path);
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

private:
    // Of the last component only: the folders' own names may have capitals.
    static std::string lowerCase(std::string_view path) {
        std::string text(path);
        for (std::size_t i = text.rfind('/'); i < text.size(); ++i)
            if (text[i] >= 'A' && text[i] <= 'Z') text[i] |= 0x20;
        return text;
    }
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
    static void link(const std::string& target, const std::string& path) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::filesystem::create_symlink(target, path);
    }
};

}  // namespace fontcatalogtest
