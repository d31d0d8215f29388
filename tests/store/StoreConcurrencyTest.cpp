// Many processes change one domain at once, while another one reads it without a pause. TYPESLATE_LONG_TESTS=1 makes
// 2,000 changes for each of eight processes, and 200 processes for each.
#include <sys/mman.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "tests/store/StoreSupport.h"

using namespace check;

namespace {

constexpr int kProcesses = 8;

struct Shared {
    std::atomic<long> longestWait{0}, readings{0};  // microseconds
    std::atomic<bool> finished{false};
};

bool isLong() { return std::getenv("TYPESLATE_LONG_TESTS") != nullptr; }
std::string keyOf(int process, int change) { return std::to_string(process) + "/" + std::to_string(change); }

bool makeChange(Store& store, int process, int change, Shared& shared) {
    store.set(keyOf(process, change), change);
    auto start = std::chrono::steady_clock::now();
    bool stored = store.synchronize();
    long wait = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count();
    for (long longest = shared.longestWait;
         wait > longest && !shared.longestWait.compare_exchange_weak(longest, wait);) {
    }
    return stored;
}

bool readsWholeUntilFinished(const std::string& path, Shared& shared) {
    bool existed = false;
    while (!shared.finished) {
        std::string bytes = readFile(path);
        existed |= !bytes.empty();
        if (existed && !platform::decodePropertyList(bytes).isDictionary()) return false;
        shared.readings += existed;
    }
    return true;
}

using Writer = std::function<bool(const std::string& folder, int process, int changes, Shared& shared)>;

void runTogether(const char* label, int changes, const Writer& writer) {
    TemporaryFolder temporary;
    void* memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    REQUIRE(memory != MAP_FAILED);
    Shared& shared = *new (memory) Shared;
    std::string path = temporary / kDomain + ".plist";
    pid_t reader = start([&] { return readsWholeUntilFinished(path, shared); });
    std::vector<pid_t> writers;
    for (int process = 0; process < kProcesses; ++process)
        writers.push_back(start([&, process] { return writer(temporary.path(), process, changes, shared); }));
    for (pid_t child : writers) CHECK(succeeded(child));
    shared.finished = true;
    CHECK(succeeded(reader));

    Store store(temporary.path());
    CHECK_EQ(store.preferences.copyDomain(kDomain).size(), static_cast<std::size_t>(kProcesses * changes));
    for (int process = 0; process < kProcesses; ++process)
        for (int change = 0; change < changes; ++change) CHECK(store[keyOf(process, change)] == PropertyList(change));
    std::printf("       %s: %d x %d changes, longest synchronize %.1f ms, %ld whole readings\n", label, kProcesses,
                changes, static_cast<double>(shared.longestWait) / 1000, shared.readings.load());
    munmap(memory, sizeof(Shared));
}

}  // namespace

TEST(EightProcessesAtOnce) {
    runTogether("one process for all changes", isLong() ? 2000 : 100,
                [](auto& folder, int process, int changes, Shared& shared) {
                    Store store(folder);
                    bool good = true;
                    for (int change = 0; change < changes; ++change) good &= makeChange(store, process, change, shared);
                    return good;
                });
}

TEST(AProcessForEachChange) {
    runTogether("a process for each change", isLong() ? 200 : 20,
                [](auto& folder, int process, int changes, Shared& shared) {
                    bool good = true;
                    for (int change = 0; change < changes; ++change)
                        good &= inAnotherProcess([&] {
                            Store store(folder);
                            return makeChange(store, process, change, shared);
                        });
                    return good;
                });
}
