// Eight processes change one domain at once, each its own keys: changes a second, the longest time that one of them
// took, and whether all are there in the end. First each process makes all of its changes, then a process is made for
// each.
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "linux/preferences/DiskPreferences.h"

namespace {

using Clock = std::chrono::steady_clock;
using linux::DiskPreferences;

constexpr int kProcesses = 8;
constexpr const char* kDomain = "com.example.bench";

struct SilentLog : platform::Log {
    void write(std::string_view line) override { std::fprintf(stderr, "%s\n", std::string(line).c_str()); }
};

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// False when a process ended badly.
template <typename Body>
bool inProcesses(int count, Body body) {
    for (int number = 0; number < count; ++number)
        if (fork() == 0) {
            body(number);
            _exit(0);
        }
    bool isGood = true;
    for (int status = 0; ::wait(&status) > 0;) isGood &= status == 0;
    return isGood;
}

void change(const std::string& folder, std::optional<DiskPreferences>& store, SilentLog& log, const std::string& key,
            std::atomic<double>& longest) {
    Clock::time_point start = Clock::now();
    if (!store) store.emplace(folder, log);
    store->setValue(key, 1, kDomain);
    if (!store->synchronize(kDomain)) _exit(1);
    double took = secondsSince(start);
    for (double known = longest; took > known && !longest.compare_exchange_weak(known, took);) continue;
}

void measure(const char* label, int changes, bool inAProcessEach) {
    std::string folder = (std::filesystem::temp_directory_path() / "writers-bench-XXXXXX").string();
    if (!mkdtemp(folder.data())) std::abort();
    void* shared =
        mmap(nullptr, sizeof(std::atomic<double>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto& longest = *new (shared) std::atomic<double>(0);
    SilentLog log;
    Clock::time_point start = Clock::now();
    bool isGood = inProcesses(kProcesses, [&](int process) {
        std::optional<DiskPreferences> store;
        for (int i = 0; i < changes; ++i) {
            std::string key = std::to_string(process) + "/" + std::to_string(i);
            if (!inAProcessEach) {
                change(folder, store, log, key, longest);
            } else if (!inProcesses(1, [&](int) { change(folder, store, log, key, longest); })) {
                _exit(1);
            }
        }
    });
    double seconds = secondsSince(start);
    std::size_t kept = DiskPreferences(folder, log).copyDomain(kDomain).size();
    std::printf("%s: %.0f changes a second, longest %.0f ms, %zu of %d kept%s\n", label, kProcesses * changes / seconds,
                longest * 1000, kept, kProcesses * changes, isGood ? "" : ", a process ended badly");
    munmap(shared, sizeof(std::atomic<double>));
    std::filesystem::remove_all(folder);
}

}  // namespace

int main() {
    measure("eight processes, 500 changes each", 500, false);
    measure("a process for each of 8 x 100 changes", 100, true);
    return 0;
}
