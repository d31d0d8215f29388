// Every single call of the store fails, falls short, is its process's last, or is overtaken by another process.
#include <cerrno>
#include <csignal>
#include <string>

#include "tests/store/StoreSupport.h"

using namespace check;

namespace {

// Each scenario ends before a synchronize that is to store "mine", with "theirs" from another process to be kept.
struct Scenario {
    const char* label;
    bool domainExists, readBefore, otherWrites, damaged;
};
constexpr Scenario kScenarios[] = {
    {"first write ever", false, false, false, false},   {"first write to a domain", true, false, false, false},
    {"second write", true, true, false, false},         {"changed by another process", true, true, true, false},
    {"damaged at first use", true, false, false, true}, {"damaged after use", true, true, false, true},
};

struct Stage : Place {
    std::string before;
    FaultyFileAccess files;
    Store store{folder, files};
    bool expectTheirs;

    explicit Stage(const Scenario& scenario) : expectTheirs(scenario.domainExists && !scenario.damaged) {
        if (scenario.domainExists) REQUIRE(Store(folder).write("theirs", "old"));
        if (scenario.readBefore) REQUIRE(store["theirs"] == PropertyList("old"));
        if (scenario.otherWrites) REQUIRE(Store(folder).write("theirs", "new"));
        if (scenario.damaged) REQUIRE(writeFile(path, "bplist00 cut"));
        before = readFile(path);
        store.set("mine", std::string(10'000, 'm'));
        files.calls = 0;
    }
    bool isWhole() const {
        std::string now = readFile(path);
        return now == before || propertylist::decodePropertyList(now)["mine"].stringValue().size() == 10'000 ||
               (now.empty() && isMovedAside());
    }
    bool isMovedAside() const {
        for (const std::string& name : filesIn(folder))
            if (name.find(".damaged-") != name.npos) return readFile(folder + "/" + name) == "bplist00 cut";
        return false;
    }
    void checkStored() {
        Store reader(folder);
        CHECK_EQ(reader["mine"].stringValue().size(), 10'000u);
        CHECK_EQ(static_cast<bool>(reader["theirs"]), expectTheirs);
        CHECK(!fs::exists(leftover));
        if (before == "bplist00 cut") CHECK(isMovedAside());
    }
};

}  // namespace

TEST(AnyCallMayFailOrBeTheLast) {
    constexpr int kDeath = 0;
    int refusals = 0, deaths = 0;
    for (const Scenario& scenario : kScenarios)
        // A lasting error is that of every call from then on, until the synchronize has ended.
        for (auto [error, lasting] : {std::pair{ENOSPC, false},
                                      {EIO, false},
                                      {EACCES, false},
                                      {EMFILE, false},
                                      {EIO, true},
                                      {EINTR, false},
                                      {kDeath, false}})
            for (int failing = 1, reached = 1; failing <= reached; ++failing) {
                Stage stage(scenario);
                CONTEXT(std::string(scenario.label) + ", error " + std::to_string(error) +
                        (lasting ? " from call " : " at call ") + std::to_string(failing));
                bool renamed = false;
                stage.files.hook = [&, error = error, lasting = lasting](Call call, std::size_t& size, int number) {
                    // Each call falls short as well.
                    size = std::min<std::size_t>(size, call == Call::Write ? 4096 : 7);
                    if (number == failing && error == kDeath) std::raise(SIGKILL);
                    if (number == failing) reached = failing + 1;
                    if (number == failing || (lasting && number > failing)) return -error;
                    renamed |= call == Call::Rename;
                    return 0;
                };
                auto synchronize = [&] { return stage.store.synchronize(); };
                bool isStored = error == kDeath ? inAnotherProcess(synchronize) : synchronize();
                stage.files.hook = nullptr;
                CHECK(stage.isWhole() && (isStored || error != EINTR));
                CHECK_EQ(stage.store["mine"].stringValue().size(), 10'000u);
                if (!isStored && error == kDeath) {
                    ++deaths;
                    reached = failing + 1;
                } else if (!isStored) {
                    ++refusals;
                    CHECK(!stage.store.log.lines.empty());
                    if (!renamed && !scenario.damaged) CHECK_EQ(readFile(stage.path), stage.before);
                    CHECK(lasting || !fs::exists(stage.leftover));
                }
                CHECK(synchronize());
                stage.checkStored();
            }
    CHECK(refusals > 300 && deaths > 60);
}

TEST(ReadErrorsAreNeverTakenForAnEmptyDomain) {
    for (int failing = 1, reached = 1; failing <= reached; ++failing) {
        CONTEXT("call " + std::to_string(failing));
        Stage stage(kScenarios[1]);
        stage.files.hook = [&](Call, std::size_t&, int number) {
            if (number == failing) reached = failing + 1;
            return number == failing ? -EIO : 0;
        };
        PropertyList theirs = stage.store["theirs"];
        CHECK(!theirs || theirs == PropertyList("old"));
        if (!theirs) stage.files.failAlways(Call::Read, EIO);
        CHECK_EQ(stage.store.isReadable(), static_cast<bool>(theirs));
        stage.files.hook = nullptr;
        CHECK(stage.store.isReadable());
        CHECK_EQ(stage.store["theirs"].stringValue(), "old");
    }
}

// What others do between any two calls, as long as the lock is not held, is neither lost nor in the way.
TEST(OvertakenAtAnyCall) {
    const std::pair<const char*, std::function<void(Stage&)>> overtakings[] = {
        {"another writer", [](Stage& stage) { CHECK(Store(stage.folder).write("theirs", "new")); }},
        {"lock file removed", [](Stage& stage) { fs::remove(stage.lock); }},
        {"folder replaced",
         [](Stage& stage) {
             fs::rename(stage.folder, stage.temporary / "old");
             fs::copy(stage.temporary / "old", stage.folder, fs::copy_options::recursive);
         }},
        {"turned into a link",
         [](Stage& stage) {
             fs::rename(stage.path, stage.temporary / "target");
             fs::create_symlink(stage.temporary / "target", stage.path);
         }},
    };
    for (const Scenario& scenario : {kScenarios[1], kScenarios[2]})
        for (const auto& [label, act] : overtakings)
            for (int at = 1, calls = at; at <= calls; ++at) {
                CONTEXT(std::string(scenario.label) + ", " + label + " at call " + std::to_string(at));
                Stage stage(scenario);
                bool locked = false, isLink = false;
                stage.files.hook = [&, &act = act](Call call, std::size_t&, int number) {
                    if (number == at && !locked) act(stage);
                    if (number == at) isLink = fs::is_symlink(stage.path);
                    if (!locked) calls = number;
                    locked |= call == Call::Lock;
                    return 0;
                };
                CHECK(stage.store.synchronize());
                stage.checkStored();
                CHECK_EQ(fs::is_symlink(stage.path), isLink);
            }
}

// Run under a tracer that shows the calls of the kernel: see CMakeLists.txt.
TEST(StepsOfAWrite) {
    TemporaryFolder temporary;
    CHECK(Store(temporary / "new").write("key", 1));
    CHECK(writeFile(temporary / "new/" + kDomain + ".plist", "cut") && !Store(temporary / "new")["key"]);
}
