// One click on an option with 1,000 entries in the list, from the action to "stored, flushed, renamed, announced",
// beside a bare write, flush, rename and flush of the folder with as many bytes. The two take turns; medians count.
// Files lie in TMPDIR, which should be a disk.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "linux/preferences/DiskPreferences.h"
#include "pane/TSPreferencePane.h"
#include "settings/EntryList.h"
#include "tests/support/FakeControls.h"
#include "tests/support/FakePlatform.h"

namespace {

using namespace platform;
namespace fs = std::filesystem;

constexpr int kEntries = 1000;
constexpr int kRounds = 300;

PropertyList entryList() {
    PropertyList settings = settings::newGlobalEntry()["Settings"];
    std::vector<PropertyList> list{settings::newGlobalEntry()};
    for (int i = 1; i < kEntries; ++i) {
        std::string identifier = "org.example.Application" + std::to_string(i);
        MutableDictionary own(settings);  // options of its own, as entries on disk have
        own.set("FontSize", i % 40);
        list.push_back(PropertyList::dictionary({{"Name", "Application " + std::to_string(i)},
                                                 {"Path", "/usr/share/applications/" + identifier + ".desktop"},
                                                 {"Identifier", identifier},
                                                 {"Type", "Identifier"},
                                                 {"Data", identifier},
                                                 {"Settings", std::move(own).freeze()}}));
    }
    return PropertyList::array(std::move(list));
}

template <typename Action>
double microseconds(Action action) {
    auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

void bareReplace(const std::string& folder, const std::string& bytes) {
    std::string temporary = folder + "/bare.tmp", target = folder + "/bare";
    int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) || fdatasync(file) != 0)
        std::abort();
    close(file);
    int folderFile = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (rename(temporary.c_str(), target.c_str()) != 0 || fsync(folderFile) != 0) std::abort();
    close(folderFile);
}

double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + values.size() / 2);
    return values[values.size() / 2];
}

struct SilentLog final : Log {
    void write(std::string_view) override {}
};

}  // namespace

int main() {
    std::string folder = (fs::temp_directory_path() / "click-bench-XXXXXX").string();
    if (!mkdtemp(folder.data())) return 1;
    SilentLog log;
    std::string domain(settings::kSettingsDomain);
    {
        linux::DiskPreferences writer(folder, log);
        writer.setValue(settings::kEntryListKey, entryList(), domain);
        writer.synchronize(domain);
    }
    linux::DiskPreferences store(folder, log);
    fake::World world;
    TSPreferencePane pane({.paneBundle = world.paneBundle,
                           .host = world.host,
                           .preferences = store,
                           .notifications = world.notifications,
                           .bundles = world.bundles,
                           .files = world.files,
                           .applications = world.applications,
                           .system = world.system,
                           .runLoop = world.runLoop,
                           .toolkit = world.toolkit,
                           .log = log,
                           .processes = world.processes,
                           .launcher = world.launcher,
                           .dates = world.dates});
    fake::TableView table;
    pane.setOutlet("exTableView", table);
    table.setDataSource(&pane);
    table.setSelectionObserver(
        [&pane](const InterfaceNotification& notification) { pane.tableViewSelectionDidChange(notification); });
    table.selectRow(kEntries / 2);
    fake::Button box;
    box.tagValue = 3;

    std::ifstream in(folder + "/" + domain + ".plist", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    std::vector<double> clicks, bare;
    for (int i = 0; i < kRounds; ++i) {
        bare.push_back(microseconds([&] { bareReplace(folder, bytes); }));
        box.on = !box.on;
        clicks.push_back(microseconds([&] { pane.performAction("togglePerAppPrefs:", box); }));
    }
    std::printf("one click, %d entries, %zu bytes: %.0f us; bare replacement: %.0f us; ratio %.2f\n", kEntries,
                bytes.size(), median(clicks), median(bare), median(clicks) / median(bare));
    fs::remove_all(folder);
    return 0;
}
