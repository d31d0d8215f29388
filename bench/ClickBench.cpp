// One click on an option, from the action to "stored, flushed, renamed, announced", beside a bare write, flush, rename
// and flush of the folder with as many bytes. The two take turns; medians count. Files lie in TMPDIR, which should be a
// disk.
//
// After a pause as a person makes it the pane has had a look at the file, as the announcement of the click before
// brings it. Clicks that follow sooner have to read the file again, because it is as young as a change of another
// program's could be. Both wait at least until nothing of the click before goes on that would slow the bare replacement
// down.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "linux/preferences/DiskPreferences.h"
#include "pane/TSPreferencePane.h"
#include "settings/EntryList.h"
#include "tests/support/FakeControls.h"
#include "tests/support/FakePlatform.h"

namespace {

using namespace platform;
namespace fs = std::filesystem;

struct Pace {
    const char* name;
    std::chrono::milliseconds pause;
    bool looks;
};
constexpr Pace kPaces[] = {{"quickly", std::chrono::milliseconds(3), false},
                           {"as a person", std::chrono::milliseconds(60), true}};

PropertyList entryList(int count) {
    PropertyList settings = settings::newGlobalEntry()["Settings"];
    std::vector<PropertyList> list{settings::newGlobalEntry()};
    for (int i = 1; i < count; ++i) {
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

std::string newFolder() {
    std::string folder = (fs::temp_directory_path() / "click-bench-XXXXXX").string();
    if (!mkdtemp(folder.data())) std::abort();
    return folder;
}

std::string contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

constexpr int kRounds = 100;

class ClickBench {
public:
    explicit ClickBench(int entries) : entries_(entries) {
        {
            linux::DiskPreferences writer(folder_, log_);
            writer.setValue(settings::kEntryListKey, entryList(entries), kDomain);
            writer.synchronize(kDomain);
        }
        pane_.setOutlet("exTableView", table_);
        table_.setDataSource(&pane_);
        table_.setSelectionObserver(
            [this](const InterfaceNotification& notification) { pane_.tableViewSelectionDidChange(notification); });
        table_.selectRow(entries / 2);
        box_.tagValue = 3;
        click();
        bytes_ = contents(path_);
        click();
        if (contents(path_) == bytes_) std::abort();
    }
    ~ClickBench() { fs::remove_all(folder_); }

    void run(const Pace& pace) {
        std::vector<double> clicks, bare;
        for (int i = 0; i < kRounds; ++i) {
            rest(pace);
            bare.push_back(microseconds([&] { bareReplace(folder_, bytes_); }));
            rest(pace);
            clicks.push_back(microseconds([&] { click(); }));
        }
        std::printf("one click, %d entries, %zu bytes, %s: %.0f us; bare replacement: %.0f us; ratio %.2f\n", entries_,
                    bytes_.size(), pace.name, median(clicks), median(bare), median(clicks) / median(bare));
    }

private:
    void click() {
        box_.on = !box_.on;
        pane_.performAction("togglePerAppPrefs:", box_);
    }
    void rest(const Pace& pace) {
        std::this_thread::sleep_for(pace.pause);
        if (pace.looks) store_.synchronize(kDomain);
    }

    const std::string kDomain{settings::kSettingsDomain};
    const int entries_;
    const std::string folder_ = newFolder();
    const std::string path_ = folder_ + "/" + kDomain + ".plist";
    std::string bytes_;
    SilentLog log_;
    linux::DiskPreferences store_{folder_, log_};
    fake::World world_;
    TSPreferencePane pane_{{.paneBundle = world_.paneBundle,
                            .host = world_.host,
                            .preferences = store_,
                            .notifications = world_.notifications,
                            .bundles = world_.bundles,
                            .files = world_.files,
                            .applications = world_.applications,
                            .system = world_.system,
                            .runLoop = world_.runLoop,
                            .toolkit = world_.toolkit,
                            .log = log_,
                            .processes = world_.processes,
                            .launcher = world_.launcher,
                            .dates = world_.dates,
                            .documents = world_.documents,
                            .expressions = world_.expressions}};
    fake::TableView table_;
    fake::Button box_;
};

}  // namespace

int main() {
    for (int entries : {1000, 10000}) {
        ClickBench bench(entries);
        for (const Pace& pace : kPaces) bench.run(pace);
    }
}
