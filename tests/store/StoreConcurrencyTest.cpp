// Many processes change one domain at once, while another one reads it without a pause. TYPESLATE_LONG_TESTS=1 makes
// 2,000 changes for each of eight processes, and 200 processes for each.
#include <csignal>
#include <cstdlib>

#include "tests/store/StoreSupport.h"

using namespace check;

namespace {

constexpr int kProcesses = 8;

std::string keyOf(int process, int change) { return std::to_string(process) + "/" + std::to_string(change); }

void runTogether(const Place& place, int changes, bool inAProcessEach) {
    pid_t reader = start([&] {
        for (bool existed = false;;) {
            std::string bytes = readFile(place.path);
            existed |= !bytes.empty();
            if (existed && !propertylist::decodePropertyList(bytes).isDictionary()) return false;
        }
    });
    std::vector<pid_t> writers;
    for (int process = 0; process < kProcesses; ++process)
        writers.push_back(start([&, process] {
            Store store(place.folder);
            for (int change = 0; change < changes; ++change) {
                std::string key = keyOf(process, change);
                auto makeApart = [&] { return Store(place.folder).write(key, change); };
                if (!(inAProcessEach ? inAnotherProcess(makeApart) : store.write(key, change))) return false;
            }
            return true;
        }));
    for (pid_t child : writers) CHECK(succeeded(child));
    int status = 0;
    CHECK(::kill(reader, SIGTERM) == 0 && ::waitpid(reader, &status, 0) == reader);
    CHECK(WIFSIGNALED(status));  // it had not seen half a file
}

}  // namespace

TEST(EightProcessesAtOnce) {
    bool isLong = std::getenv("TYPESLATE_LONG_TESTS") != nullptr;
    for (auto [changes, inAProcessEach] : {std::pair{isLong ? 2000 : 100, false}, {isLong ? 200 : 20, true}}) {
        CONTEXT(inAProcessEach ? "a process for each change" : "a process for all changes");
        Place place;
        runTogether(place, changes, inAProcessEach);
        Store store(place.folder);
        CHECK_EQ(store.preferences.copyDomain(kDomain).size(), static_cast<std::size_t>(kProcesses * changes));
        for (int process = 0; process < kProcesses; ++process)
            for (int change = 0; change < changes; ++change)
                CHECK(store[keyOf(process, change)] == PropertyList(change));
    }
}
