// Many processes change one domain at once, while another one reads it without a pause. TYPESLATE_LONG_TESTS=1 makes
// 2,000 changes for each of eight processes, and 200 processes for each.
#include <sys/mman.h>

#include <atomic>
#include <cstdlib>

#include "tests/store/StoreSupport.h"

using namespace check;

namespace {

constexpr int kProcesses = 8;

bool isLong() { return std::getenv("TYPESLATE_LONG_TESTS") != nullptr; }
std::string keyOf(int process, int change) { return std::to_string(process) + "/" + std::to_string(change); }

bool readsWholeUntilFinished(const std::string& path, const std::atomic<bool>& finished) {
    bool existed = false;
    while (!finished) {
        std::string bytes = readFile(path);
        existed |= !bytes.empty();
        if (existed && !propertylist::decodePropertyList(bytes).isDictionary()) return false;
    }
    return true;
}

bool makesItsChanges(const std::string& folder, int process, int changes, bool inAProcessEach) {
    Store store(folder);
    for (int change = 0; change < changes; ++change) {
        const std::string key = keyOf(process, change);
        auto makeApart = [&] { return Store(folder).write(key, change); };
        if (!(inAProcessEach ? inAnotherProcess(makeApart) : store.write(key, change))) return false;
    }
    return true;
}

void runTogether(int changes, bool inAProcessEach) {
    TemporaryFolder temporary;
    void* memory = mmap(nullptr, sizeof(std::atomic<bool>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    REQUIRE(memory != MAP_FAILED);
    std::atomic<bool>& finished = *new (memory) std::atomic<bool>(false);
    std::string path = temporary / kDomain + ".plist";
    pid_t reader = start([&] { return readsWholeUntilFinished(path, finished); });
    std::vector<pid_t> writers;
    for (int process = 0; process < kProcesses; ++process)
        writers.push_back(
            start([&, process] { return makesItsChanges(temporary.path(), process, changes, inAProcessEach); }));
    for (pid_t child : writers) CHECK(succeeded(child));
    finished = true;
    CHECK(succeeded(reader));

    Store store(temporary.path());
    CHECK_EQ(store.preferences.copyDomain(kDomain).size(), static_cast<std::size_t>(kProcesses * changes));
    for (int process = 0; process < kProcesses; ++process)
        for (int change = 0; change < changes; ++change) CHECK(store[keyOf(process, change)] == PropertyList(change));
    munmap(memory, sizeof(std::atomic<bool>));
}

}  // namespace

TEST(EightProcessesAtOnce) { runTogether(isLong() ? 2000 : 100, false); }

TEST(AProcessForEachChange) { runTogether(isLong() ? 200 : 20, true); }
