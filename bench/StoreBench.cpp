// The preference store beside the least that the machine needs for the same: a look-up in a map of the standard
// library, one stat, and a bare write, flush, rename, flush of as many bytes. Files lie in the current folder's file
// system (or TMPDIR), which should be a disk.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <unordered_map>

#include "linux/preferences/DiskPreferences.h"

namespace {

using linux::DiskPreferences;
using platform::PropertyList;
namespace fs = std::filesystem;

const std::string kDomain = "com.example.bench";

struct SilentLog : platform::Log {
    void write(std::string_view line) override { std::fprintf(stderr, "%s\n", std::string(line).c_str()); }
};

struct Folder {
    std::string path;
    Folder() {
        std::string pattern = (fs::temp_directory_path() / "store-bench-XXXXXX").string();
        path = mkdtemp(pattern.data());
    }
    ~Folder() { fs::remove_all(path); }
    std::string domainFile() const { return path + "/" + kDomain + ".plist"; }
};

PropertyList entry(int number, bool enabled) {
    std::string text = std::to_string(number);
    PropertyList settings = PropertyList::dictionary({{"Enabled", enabled},
                                                      {"ShowFontInFace", true},
                                                      {"DupeHandling", 1},
                                                      {"ShowSets", true},
                                                      {"ShowIcons", true},
                                                      {"FontSize", number % 40},
                                                      {"HierarchicalMenu", true},
                                                      {"ScriptSort", false}});
    return PropertyList::dictionary({{"Type", "Identifier"},
                                     {"Name", "Application " + text},
                                     {"Data", "com.example.application" + text},
                                     {"Identifier", "com.example.application" + text},
                                     {"Path", "/Applications/Example/Application " + text + ".app"},
                                     {"Settings", settings}});
}

struct Store {
    Folder folder;
    SilentLog log;
    DiskPreferences preferences{folder.path, log};
    explicit Store(int entries) {
        std::vector<PropertyList> list;
        for (int i = 0; i < entries; ++i) list.push_back(entry(i, true));
        preferences.setValue("TheExcList", PropertyList::array(list), kDomain);
        for (int i = 0; i < 20; ++i) preferences.setValue("Key " + std::to_string(i), i, kDomain);
        preferences.synchronize(kDomain);
        preferences.synchronize(kDomain);
    }
};

void readKey(benchmark::State& state) {
    Store store(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(store.preferences.copyValue("Key 7", kDomain));
}
BENCHMARK(readKey)->Arg(10)->Arg(10'000);

void readKeyOfMap(benchmark::State& state) {
    std::unordered_map<std::string, int> map;
    for (int i = 0; i < 20; ++i) map.emplace("Key " + std::to_string(i), i);
    const std::string key = "Key 7";
    for (auto _ : state) benchmark::DoNotOptimize(map.find(key));
}
BENCHMARK(readKeyOfMap);

void waitForTheClockToPass(const Store& store) {
    struct stat status;
    stat(store.folder.domainFile().c_str(), &status);
    timespec now;
    do clock_gettime(CLOCK_REALTIME_COARSE, &now);
    while (now.tv_sec == status.st_ctim.tv_sec && now.tv_nsec <= status.st_ctim.tv_nsec);
}

void synchronizeUnchanged(benchmark::State& state) {
    Store store(1'000);
    waitForTheClockToPass(store);
    store.preferences.synchronize(kDomain);
    for (auto _ : state) benchmark::DoNotOptimize(store.preferences.synchronize(kDomain));
}
BENCHMARK(synchronizeUnchanged);

void bareStat(benchmark::State& state) {
    Store store(1'000);
    const std::string path = store.folder.domainFile();
    struct stat status;
    for (auto _ : state) benchmark::DoNotOptimize(stat(path.c_str(), &status));
}
BENCHMARK(bareStat);

void bareReplace(const std::string& folder, const std::string& bytes) {
    std::string temporary = folder + "/bare.tmp", target = folder + "/bare";
    int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    for (std::size_t done = 0; done < bytes.size();)
        done += static_cast<std::size_t>(write(file, bytes.data() + done, bytes.size() - done));
    fdatasync(file);
    close(file);
    rename(temporary.c_str(), target.c_str());
    int parent = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    fsync(parent);
    close(parent);
}

double secondsOf(const auto& action) {
    auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// One entry of a list of 1,000 changes and is stored; turn and turn about with the bare cycle, so that both meet the
// same disk. The counter "ratio" compares the medians.
void changeOneEntry(benchmark::State& state) {
    constexpr int kEntries = 1'000;
    Store store(kEntries);
    DiskPreferences preferences(store.folder.path, store.log);  // has read the file, as a process has that starts
    std::ifstream in(store.folder.domainFile(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    std::vector<double> ours, bare;
    int turn = 0;
    for (auto _ : state) {
        ours.push_back(secondsOf([&] {
            auto list = platform::mutableArray(preferences.copyValue("TheExcList", kDomain));
            list[500] = entry(500, ++turn % 2);
            preferences.setValue("TheExcList", PropertyList::array(std::move(list)), kDomain);
            if (!preferences.synchronize(kDomain)) state.SkipWithError("not stored");
        }));
        state.SetIterationTime(ours.back());
        bare.push_back(secondsOf([&] { bareReplace(store.folder.path, bytes); }));
    }
    auto median = [](std::vector<double>& values) {
        std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
        return values[values.size() / 2];
    };
    state.counters["bytes"] = static_cast<double>(bytes.size());
    state.counters["ours_us"] = median(ours) * 1e6;
    state.counters["bare_us"] = median(bare) * 1e6;
    state.counters["ratio"] = median(ours) / median(bare);
}
BENCHMARK(changeOneEntry)->UseManualTime()->Unit(benchmark::kMicrosecond)->MinTime(3);

}  // namespace

BENCHMARK_MAIN();
