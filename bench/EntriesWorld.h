// A pane on many installed applications: real desktop files, the real index and the real store, in a temporary folder.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "linux/applications/LinuxApplications.h"
#include "linux/files/LinuxFiles.h"
#include "linux/preferences/DiskPreferences.h"
#include "pane/TSPreferencePane.h"
#include "settings/EntryList.h"
#include "tests/support/FakePlatform.h"

namespace bench {

struct SilentLog final : platform::Log {
    void write(std::string_view) override {}
};

class EntriesWorld {
public:
    // Without a toolkit images have only names.
    explicit EntriesWorld(int applications, platform::InterfaceToolkit* toolkit = nullptr) {
        namespace fs = std::filesystem;
        folder_ = (fs::temp_directory_path() / "entries-bench-XXXXXX").string();
        if (!mkdtemp(folder_.data())) std::abort();
        std::string desktopFiles = folder_ + "/data/applications";
        fs::create_directories(desktopFiles);
        for (int i = 0; i < applications; ++i) {
            files.push_back(desktopFiles + "/org.example.Application" + std::to_string(i) + ".desktop");
            std::ofstream(files.back()) << "[Desktop Entry]\nType=Application\nName=Application " << i
                                        << "\nExec=/bin/true %F\nIcon=application\n";
        }
        setenv("XDG_DATA_HOME", (folder_ + "/data").c_str(), 1);
        setenv("XDG_DATA_DIRS", "/nonexistent", 1);
        applications_.emplace();
        world_.installAliasFramework();
        pane.emplace(platform::Platform{.paneBundle = world_.paneBundle,
                                        .host = world_.host,
                                        .preferences = store,
                                        .notifications = world_.notifications,
                                        .bundles = world_.bundles,
                                        .files = files_,
                                        .applications = *applications_,
                                        .system = world_.system,
                                        .runLoop = world_.runLoop,
                                        .toolkit = toolkit ? *toolkit : world_.toolkit,
                                        .log = log_,
                                        .processes = world_.processes,
                                        .launcher = world_.launcher,
                                        .dates = world_.dates,
                                        .documents = world_.documents,
                                        .expressions = world_.expressions});
    }
    ~EntriesWorld() {
        pane.reset();
        std::filesystem::remove_all(folder_);
    }

    void pass(double seconds) { world_.runLoop.advance(seconds); }
    void clear() {
        store.setValue(settings::kEntryListKey, platform::PropertyList::array({settings::newGlobalEntry()}),
                       settings::kSettingsDomain);
    }
    void add(std::size_t count) {
        pane->exOpenPanelDidEnd_returnCode_contextInfo(
            nullptr, 1, {files.begin(), files.begin() + static_cast<std::ptrdiff_t>(count)});
    }

private:
    std::string folder_;
    SilentLog log_;
    fake::World world_;
    linux::LinuxFiles files_;
    std::optional<linux::LinuxApplications> applications_;

public:
    std::vector<std::string> files;
    linux::DiskPreferences store{folder_ + "/preferences", log_};
    std::optional<TSPreferencePane> pane;
};

}  // namespace bench
