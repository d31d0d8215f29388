// Every single call of the store fails, falls short or is overtaken by another process.
#include <cerrno>
#include <filesystem>
#include <string>

#include "tests/store/StoreSupport.h"

using namespace check;
using Call = FileAccess::Call;

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

struct Stage {
    TemporaryFolder temporary;
    std::string folder = temporary / "a/b", path = folder + "/" + kDomain + ".plist", before;
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
        if (now == before) return true;
        return propertylist::decodePropertyList(now)["mine"].stringValue().size() == 10'000 ||
               (now.empty() && isMovedAside());
    }
    bool isMovedAside() const {
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.path().filename().string().find(".damaged-") != std::string::npos)
                return readFile(entry.path()) == "bplist00 cut";
        return false;
    }
    void checkStored() {
        Store reader(folder);
        CHECK_EQ(reader["mine"].stringValue().size(), 10'000u);
        CHECK_EQ(static_cast<bool>(reader["theirs"]), expectTheirs);
        CHECK(!std::filesystem::exists(folder + "/." + kDomain + ".plist.tmp"));
        if (before == "bplist00 cut") CHECK(isMovedAside());
    }
};

}  // namespace

TEST(AnyCallMayFail) {
    struct Fault {
        const char* label;
        int error;
        bool lasting;  // every call from then on, until the synchronize has ended
    };
    int refusals = 0;
    for (const Scenario& scenario : kScenarios)
        for (const Fault& fault :
             {Fault{"ENOSPC", ENOSPC, false}, Fault{"EIO", EIO, false}, Fault{"EACCES", EACCES, false},
              Fault{"EMFILE", EMFILE, false}, Fault{"EIO for good", EIO, true}})
            for (int failing = 1, reached = 1; failing <= reached; ++failing) {
                Stage stage(scenario);
                CONTEXT(std::string(scenario.label) + ", " + fault.label + " at call " + std::to_string(failing));
                bool renamed = false;
                stage.files.hook = [&](Call call, std::size_t&, int number) {
                    if (number == failing) reached = failing + 1;
                    if (number == failing || (fault.lasting && number > failing)) return -fault.error;
                    renamed |= call == Call::Rename;
                    return 0;
                };
                bool stored = stage.store.synchronize();
                stage.files.hook = nullptr;
                CHECK(stage.isWhole());
                CHECK_EQ(stage.store["mine"].stringValue().size(), 10'000u);
                if (!stored) {
                    ++refusals;
                    CHECK(!stage.store.log.lines.empty());
                    if (!renamed && !scenario.damaged) CHECK_EQ(readFile(stage.path), stage.before);
                    CHECK(stage.store.synchronize());
                }
                stage.checkStored();
            }
    CHECK(refusals > 300);
}

TEST(InterruptedAndShortCallsGoOn) {
    for (const Scenario& scenario : kScenarios) {
        CONTEXT(scenario.label);
        Stage stage(scenario);
        stage.files.hook = [&](Call, std::size_t& size, int number) {
            size = std::min<std::size_t>(size, 7);
            return number % 2 ? -EINTR : 0;
        };
        CHECK(stage.store.synchronize());
        stage.checkStored();
    }
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
        stage.files.hook = [&](Call call, std::size_t&, int) { return call == Call::Read && !theirs ? -EIO : 0; };
        CHECK_EQ(stage.store.preferences.isReadable(kDomain), static_cast<bool>(theirs));
        stage.files.hook = nullptr;
        CHECK(stage.store.preferences.isReadable(kDomain));
        CHECK_EQ(stage.store["theirs"].stringValue(), "old");
    }
}

// What others do between any two calls, as long as the lock is not held, is neither lost nor in the way.
TEST(OvertakenAtAnyCall) {
    struct Overtaking {
        const char* label;
        std::function<void(Stage&)> act;
    };
    const Overtaking overtakings[] = {
        {"another writer", [](Stage& stage) { CHECK(Store(stage.folder).write("theirs", "new")); }},
        {"lock file removed",
         [](Stage& stage) { std::filesystem::remove(stage.folder + "/." + kDomain + ".plist.lock"); }},
        {"folder replaced",
         [](Stage& stage) {
             std::filesystem::rename(stage.folder, stage.temporary / "old");
             std::filesystem::copy(stage.temporary / "old", stage.folder, std::filesystem::copy_options::recursive);
         }},
        {"turned into a link",
         [](Stage& stage) {
             std::filesystem::rename(stage.path, stage.temporary / "target");
             std::filesystem::create_symlink(stage.temporary / "target", stage.path);
         }},
    };
    for (const Scenario& scenario : {kScenarios[1], kScenarios[2]})
        for (const Overtaking& overtaking : overtakings)
            for (int at = 1, calls = at; at <= calls; ++at) {
                CONTEXT(std::string(scenario.label) + ", " + overtaking.label + " at call " + std::to_string(at));
                Stage stage(scenario);
                bool locked = false;
                stage.files.hook = [&](Call call, std::size_t&, int number) {
                    if (number == at && !locked) overtaking.act(stage);
                    if (!locked) calls = number;
                    locked |= call == Call::Lock;
                    return 0;
                };
                CHECK(stage.store.synchronize());
                stage.checkStored();
            }
}
