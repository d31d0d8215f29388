// The store on real files: sharing, links, owners, obstacles, damage.
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <regex>

#include "linux/system/SystemLog.h"
#include "tests/store/StoreSupport.h"

using namespace check;

namespace {

struct Stage : Place {
    Stage() { fs::create_directories(folder); }
};

struct stat statusOf(const std::string& path) {
    struct stat status = {};
    CHECK_EQ(::stat(path.c_str(), &status), 0);
    return status;
}
mode_t modeOf(const std::string& path) { return statusOf(path).st_mode & 07777; }

}  // namespace

TEST(WhatIsStoredAlreadyIsNotWrittenAgain) {
    Stage stage;
    FaultyFileAccess files;
    Store a(stage.folder, files), b(stage.folder);
    int observed = 0, flushes = 0;
    auto observation = a.preferences.observe(
        [&](const PreferenceReport& report) { observed += report.kind == PreferenceReport::Kind::Synchronized; });
    CHECK(a.write("none", {}) && !fs::exists(stage.path) && a.write("key", 1));
    ino_t first = statusOf(stage.path).st_ino;
    CHECK(a.write("key", 1) && statusOf(stage.path).st_ino == first);
    CHECK(b.write("key", 2) && a.write("key", 1) && Store(stage.folder)["key"] == PropertyList(1));
    // Of a write that failed nobody knows how far it came.
    files.hook = [&](Call call, std::size_t&, int) { return call == Call::Flush && ++flushes == 2 ? -EIO : 0; };
    CHECK(!a.write("key", 3) && a.synchronize());
    CHECK_EQ(flushes, 4);
    CHECK_EQ(observed, 5);
    flushes = 1;
    CHECK(!a.write("key", {}) && a.synchronize() && !Store(stage.folder)["key"]);
}

TEST(ServicesShareADomainKeyByKey) {
    Place place;
    Store a(place.folder), b(place.folder);
    CHECK(a.preferences.domains().value().empty() && a.log.lines.empty());
    for (const char* key : {"one", "two", "three"}) a.set(key, key);
    CHECK(a["two"] == PropertyList("two") && !b["two"] && a.synchronize() && b.synchronize());
    CHECK(modeOf(place.path) == 0600 && modeOf(place.folder) == 0700 && modeOf(place.lock) == 0600);

    for (auto [key, value] : {std::pair{"two", PropertyList()}, {"four", 4}}) a.set(key, value);
    for (auto [key, value] : {std::pair{"one", PropertyList("b's")}, {"five", true}}) b.set(key, value);
    CHECK(!a["two"] && b["two"]);
    CHECK(a.synchronize() && b.synchronize() && a.synchronize());
    std::string keys;
    PropertyList all = a.preferences.copyDomain(kDomain);
    for (const auto& entry : all.entries()) keys += std::string(entry.key.stringValue()) + " ";
    CHECK_EQ(keys, "one three four five ");
    CHECK_EQ(a["one"].stringValue(), "b's");

    a.preferences.setValue("key", 1, "another");
    a.preferences.synchronizeChanges();
    CHECK(writeFile(place.folder + "/no property list", "") && writeFile(place.folder + "/cut.plist", "cut"));
    CHECK_EQ(b.preferences.domains().value(), (std::vector<std::string>{"another", kDomain, "cut"}));
    for (const char* key : {"one", "three", "four", "five"}) a.set(key, {});
    CHECK(a.synchronize() && b.synchronize());
    CHECK(!b["one"] && propertylist::decodePropertyList(readFile(place.path)).isDictionary());
    CHECK_EQ(b.preferences.domains().value(), (std::vector<std::string>{"another", "cut"}));
    fs::remove(place.path);
    CHECK(a.write("six", 6) && b.synchronize() && b["six"] == PropertyList(6));
}

TEST(ChangesOfOthersAreNoticedWhateverTheTimeStampsSay) {
    Stage stage;
    auto values = [](int i) { return PropertyList::dictionary({{"n", 100 + i % 800}}); };
    REQUIRE(writeFile(stage.path, encoded(values(0))));
    fs::file_time_type first = fs::last_write_time(stage.path);
    Store store(stage.folder);
    auto openFiles = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); };
    auto openAtFirst = openFiles();
    for (int i = 1; i < 300; ++i) {
        CONTEXT(std::to_string(i));
        if (i % 2) CHECK(store.write("n", 100));
        if (i % 3 == 0) fs::remove(stage.path);       // the next file is often given the same inode number
        auto inPlace = std::ios::in | std::ios::out;  // and often within the same clock tick
        CHECK(std::fstream(stage.path, i % 3 == 1 ? inPlace : std::ios::out) << encoded(values(i)) << std::flush);
        fs::last_write_time(stage.path, first);
        CHECK(store.synchronize());
        CHECK_EQ(store["n"].integerValue(), 100 + i % 800);
    }
    CHECK(openFiles() <= openAtFirst + 1);
}

TEST(ReplacedFilesAreClosedWhateverTheirSize) {
    Stage stage;
    Store store(stage.folder);
    auto replacedAndOpen = [] {
        auto isReplaced = [](const fs::path& link) { return link.string().ends_with(".plist (deleted)"); };
        std::error_code closedMeanwhile;
        int count = 0;
        for (const auto& entry : fs::directory_iterator("/proc/self/fd"))
            count += isReplaced(fs::read_symlink(entry, closedMeanwhile));
        return count;
    };
    for (int i = 0; i < 50; ++i) {
        CHECK(store.write("large", std::string(i % 5 ? 200'000 : 2'000, static_cast<char>('a' + i % 26))));
        if (i % 10 == 0) CHECK(inAnotherProcess([&] { return store.write("child", i) && store.write("child", -1); }));
        CHECK(replacedAndOpen() <= 2);  // the one being closed, and ours, which the child has replaced
    }
}

TEST(WhatCannotBeReadIsNotTakenForEmpty) {
    for (const char* obstacle :
         {"mkdir $P", "mkfifo $P", "ln -s $P $P", "ln -s /dev/zero $P", "touch $P-file; ln -s $P-file/x $P",
          "printf bplist00 > $P; truncate -s 536870913 $P", "cp $V $P; chmod 0 $P"}) {
        CONTEXT(obstacle);
        CHECK(inAnotherProcess(
            [&] {
                Stage stage;
                ScopedEnvironment path("P", stage.path.c_str()), valid("V", (stage.temporary / "valid").c_str());
                REQUIRE(writeFile(stage.temporary / "valid", encoded(kTheirs)) && std::system(obstacle) == 0);
                auto before = filesIn(stage.folder);
                Store store(stage.folder);
                CHECK(!store["theirs"] && !store.isReadable() && store.log.lines.size() == 1);
                CHECK(!store.write("mine", 2) && !store.isReadable() && store["mine"].integerValue() == 2);
                CHECK(store.log.lines.size() == 2 && store.preferences.domains() == std::vector{kDomain});
                CHECK(filesIn(stage.folder) == before && !fs::exists(stage.lock));
                fs::rename(stage.path, stage.temporary / "elsewhere");
                CHECK(writeFile(stage.path, encoded(kTheirs)) && store.isReadable());
                CHECK(store["theirs"].integerValue() == 1 && store.synchronize());
                Store reader(stage.folder);
                CHECK(reader["theirs"].integerValue() == 1 && reader["mine"].integerValue() == 2);
                chmod((stage.temporary / "elsewhere").c_str(), 0700);
                return true;
            },
            true));
    }
}

TEST(DamagedFilesAreMovedAside) {
    std::string whole = encoded(PropertyList::dictionary({{"theirs", 1}, {"list", PropertyList::array({1, "two"})}}));
    std::string xml = encodePropertyList(kTheirs, propertylist::PropertyListFormat::XML);
    std::vector<std::string> damaged = {encoded("a string"), xml.substr(0, 150), "\n", "{}"};
    for (std::size_t length = 0; length < whole.size(); ++length) damaged.push_back(whole.substr(0, length));
    for (const std::string& bytes : damaged) {
        CONTEXT(std::to_string(bytes.size()) + " bytes");
        Stage stage;
        auto damage = [&] {
            REQUIRE(writeFile(stage.path, bytes));
            fs::last_write_time(stage.path, fs::file_time_type::clock::now() - std::chrono::seconds(3));
        };
        damage();
        Store store(stage.folder);
        CHECK(!store["theirs"] && store.isReadable());
        auto files = filesIn(stage.folder);
        REQUIRE(files.size() == 1);
        CHECK(std::regex_match(files[0], std::regex(kDomain + R"(\.plist\.damaged-20\d{6}T\d{6}Z)")));
        CHECK_EQ(readFile(stage.folder + "/" + files[0]), bytes);
        CHECK(store.log.lines.size() == 1 && store.log.lines[0].find(files[0]) != std::string::npos);
        CHECK(store.log.lines[0].find(stage.path + " was damaged (byte ") != std::string::npos);
        CHECK(store.write("mine", 2));
        damage();
        CHECK(store.write("mine", 3) && filesIn(stage.folder).size() == 3);  // the second one found a name of its own
        CHECK_EQ(Store(stage.folder)["mine"].integerValue(), 3);
    }
}

TEST(AnEmptyFileMayBeAboutToBeFilled) {
    Stage stage;
    FaultyFileAccess files;
    int reads = 0;
    files.hook = [&](Call call, std::size_t&, int) {
        if (call == Call::Read && ++reads == 3) CHECK(writeFile(stage.path, encoded(kTheirs)));
        return 0;
    };
    REQUIRE(writeFile(stage.path, ""));
    CHECK_EQ(Store(stage.folder, files)["theirs"], PropertyList(1));
    CHECK_EQ(filesIn(stage.folder), std::vector{kDomain + ".plist"});
}

TEST(AChangeIsMadeToWhatIsStoredInThatMoment) {
    auto append = [](Store& store, const char* element) {
        auto change = [element](platform::MutableDictionary& values) {
            std::vector<PropertyList> list = platform::mutableArray(values["list"]);
            list.emplace_back(element);
            values.set("list", PropertyList::array(std::move(list)));
        };
        store.preferences.changeValues(change, kDomain);
    };
    for (auto [failing, isInPlace] : {std::pair{Call::Rename, false}, {Call::Flush, false}, {Call::Flush, true}}) {
        CONTEXT(std::to_string(static_cast<int>(failing)) + (isInPlace ? ", in place" : ""));
        Stage stage;
        FaultyFileAccess files;
        Store a(stage.folder, files), b(stage.folder);
        CHECK(a.write("other", 1) && b.synchronize());
        append(a, "1");
        append(b, "2");
        CHECK(a["list"].size() == 1 && b["list"].size() == 1 && b.synchronize());
        // What has failed is made once, whether or not the new file was in place already.
        int calls = 0;
        files.hook = [&, failing = failing, isInPlace = isInPlace](Call call, std::size_t&, int) {
            return call == failing && ++calls == 1 + isInPlace ? -EIO : 0;
        };
        CHECK(!a.synchronize() && a["list"].size() == 2);
        append(b, "3");
        CHECK(b.synchronize() && a.synchronize() && b.synchronize());
        auto elements = platform::mutableArray(b["list"]);
        std::ranges::sort(elements, {}, &PropertyList::stringValue);
        CHECK_EQ(elements, (std::vector<PropertyList>{"1", "2", "3"}));
    }
}

TEST(AFileSystemWithoutLocksIsSpokenOfOnce) {
    Stage stage;
    FaultyFileAccess files;
    files.failAlways(Call::Lock, ENOLCK);
    Store store(stage.folder, files);
    CHECK(store.write("mine", 1) && store.write("mine", 2) && store.log.lines.size() == 1);
}

TEST(AHeldLockIsWaitedForOnceAndItsHolderIsNamed) {
    Stage stage;
    REQUIRE(Store(stage.folder).write("theirs", 1));
    FaultyFileAccess files;
    Store store(stage.folder, files);
    store.preferences.setLongestWait(linux::LockWait(30));
    std::vector<PreferenceReport> reports;
    auto observation = store.preferences.observe([&](const PreferenceReport& report) { reports.push_back(report); });
    std::optional<linux::Transaction> holder;
    auto hold = [&] {
        holder.emplace(FileAccess::system(), stage.path, linux::LockWait());
        REQUIRE(!holder->begin());
    };
    hold();
    int tries = 0;
    files.hook = [&](Call call, std::size_t&, int) {
        tries += call == Call::Lock;
        return 0;
    };
    CHECK(!store.write("mine", 2) && std::exchange(tries, 0) > 1);
    CHECK(!store.synchronize() && tries == 1);
    REQUIRE(reports.size() == 2);
    CHECK(reports[0].kind == PreferenceReport::Kind::NotSaved && reports[0].cause == PreferenceReport::Cause::Held);
    CHECK(reports[0].holderProcess == getpid() && reports[0].holder == "store_test" && reports[0].path == stage.path);
    CHECK(store.preferences.problem(kDomain).find(std::to_string(getpid())) != std::string::npos);
    CHECK_EQ(store.log.lines.size(), 1u);
    holder.reset();
    CHECK(store.synchronize());
    hold();
    tries = 0;
    CHECK(!store.write("mine", 3) && tries > 1);
}

TEST(DamageThatCannotBeMovedOrHasBeenRepaired) {
    Stage stage;
    FaultyFileAccess files;
    REQUIRE(writeFile(stage.path, "cut"));
    files.failAlways(Call::RenameExclusive, EPERM);
    Store store(stage.folder, files);
    CHECK(!store["theirs"] && !store.isReadable() && !store.write("mine", 2));
    CHECK_EQ(readFile(stage.path), "cut");
    files.hook = [&](Call call, std::size_t&, int) {
        if (call == Call::Lock) CHECK(writeFile(stage.path, encoded(kTheirs)));
        return 0;
    };
    CHECK(store.synchronize());
    CHECK_EQ(filesIn(stage.folder), std::vector{kDomain + ".plist"});
    CHECK(store["theirs"].integerValue() == 1 && store["mine"].integerValue() == 2);
    files.failAlways(Call::RenameExclusive, EINVAL);  // as a file system that knows no such rename
    REQUIRE(writeFile(stage.path, "cut") && store.synchronize());
    CHECK(filesIn(stage.folder).size() == 1 && !fs::exists(stage.path));
}

TEST(LinksModesAndOwnersAreKept) {
    for (auto [link, targetExists, succeeds] : {std::tuple{"../elsewhere/real", true, true},
                                                {"../elsewhere/real", false, true},
                                                {"hop", true, true},
                                                {"../nowhere/real", false, false}}) {
        CONTEXT(std::string(link) + (targetExists ? "" : ", dangling"));
        Stage stage;
        std::string target = stage.temporary / "a/elsewhere/real";
        fs::create_directory(stage.temporary / "a/elsewhere");
        fs::create_symlink("../elsewhere/real", stage.folder + "/hop");
        fs::create_symlink(link, stage.path);
        if (targetExists) REQUIRE(writeFile(target, encoded(kTheirs)) && chmod(target.c_str(), 0640) == 0);
        if (targetExists && geteuid() == 0) REQUIRE(chown(target.c_str(), 12345, 54321) == 0);
        Store store(stage.folder);
        CHECK_EQ(store["theirs"].integerValue(), targetExists ? 1 : 0);
        CHECK_EQ(store.write("mine", 2), succeeds);
        CHECK(store["mine"] == PropertyList(2) && fs::read_symlink(stage.path) == link);
        CHECK(!fs::exists(stage.temporary / "a/nowhere"));
        if (!succeeds) continue;
        CHECK_EQ(modeOf(target), targetExists ? 0640u : 0600u);
        if (targetExists && geteuid() == 0) CHECK(statusOf(target).st_uid == 12345 && statusOf(target).st_gid == 54321);
        CHECK(!propertylist::decodePropertyList(readFile(target))["theirs"] == !targetExists);
    }
}

TEST(AnotherUsersFileAndAReadOnlyFolder) {
    Stage stage;
    REQUIRE(writeFile(stage.path, encoded(kTheirs)) && chmod(stage.path.c_str(), 0644) == 0);
    chmod(stage.temporary.path().c_str(), 0755);
    chmod(stage.folder.c_str(), 0555);
    CHECK(inAnotherProcess(
        [&] {
            Store store(stage.folder);
            CHECK(store["theirs"].integerValue() == 1 && !store.write("mine", 2));
            CHECK(store["mine"].integerValue() == 2 && store.isReadable());
            return store.log.lines.size() == 1;
        },
        true));
    CHECK(readFile(stage.path) == encoded(kTheirs) && chmod(stage.folder.c_str(), 0777) == 0);
    CHECK(inAnotherProcess([&] { return Store(stage.folder).write("mine", 2); }, true) && modeOf(stage.path) == 0644);
    if (geteuid() == 0) CHECK_EQ(statusOf(stage.path).st_uid, 65534u);  // it could not be given to its old owner
    CHECK_EQ(Store(stage.folder)["theirs"].integerValue(), 1);

    // What root makes in a user's folder is the user's, but for a file that has another name elsewhere.
    if (geteuid() != 0) return;
    Place users;
    std::string roots = stage.temporary / "root's";
    REQUIRE(chown(users.temporary.path().c_str(), 65534, 65534) == 0);
    CHECK(Store(users.folder).write("root's", 1) && statusOf(users.folder).st_gid == 65534);
    CHECK(inAnotherProcess([&] { return Store(users.folder).write("mine", 2); }, true));
    fs::remove(users.lock);
    REQUIRE(writeFile(roots, "") && chmod(roots.c_str(), 0600) == 0);
    fs::create_hard_link(roots, users.lock);
    CHECK(Store(users.folder).write("root's", 2) && statusOf(users.lock).st_uid == 0);
}

TEST(NamesKeysAndValuesThatAreNoneAreRefused) {
    Stage stage;
    std::string longest(DiskPreferences::kLongestDomainName, 'x');
    for (const std::string& name : std::vector<std::string>{"", ".", "..", "../x", {'a', 0, 'b'}, longest + "x"}) {
        CONTEXT(name);
        Store store(stage.folder);
        CHECK(store.preferences.synchronize(name));
        store.preferences.setValue("key", 1, name);
        CHECK(!store.preferences.copyValue("key", name) && !store.preferences.synchronize(name));
        CHECK_EQ(store.log.lines.size(), 1u);
    }
    Store store(stage.folder);
    store.preferences.setValue("key", 1, longest);
    CHECK(store.preferences.synchronize(longest) && store.preferences.domains() == std::vector{longest});
    REQUIRE(writeFile(stage.folder + "/" + longest + ".plist", "cut"));
    CHECK(store.preferences.synchronize(longest) && !store.preferences.copyValue("key", longest));

    store.log.lines.clear();
    CHECK(store.write("\xC3", 1) && store.log.lines.size() == 1 && !fs::exists(stage.path));
    PropertyList deep = "x";
    for (unsigned depth = 1; depth < PropertyList::kMaximumDepth; ++depth) deep = PropertyList::array({deep});
    CHECK(!store.write("deep", deep) && !store.synchronize() && store["deep"] == deep);
    CHECK(store.write("deep", 1) && Store(stage.folder)["deep"] == PropertyList(1));
}

TEST(NoOtherProcessHoldsOrFreesTheLock) {
    TemporaryFolder temporary;
    auto transaction =
        std::make_unique<linux::Transaction>(FileAccess::system(), temporary / "x.plist", linux::LockWait());
    REQUIRE(!transaction->begin());
    for (const auto& entry : fs::directory_iterator("/proc/self/fd"))
        if (std::error_code error; fs::read_symlink(entry, error).string().starts_with(temporary.path()))
            CHECK(::fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC);
    auto isFree = [&] { return std::system(("flock -n " + temporary / ".x.plist.lock" + " true").c_str()) == 0; };
    CHECK(inAnotherProcess([&] {
        transaction.reset();
        return !isFree();
    }));
    CHECK(!isFree() && inAnotherProcess([&] { return transaction.release() && !isFree(); }));
    transaction.reset();
    CHECK(isFree());
}

TEST(FolderFromTheEnvironment) {
    ScopedEnvironment home("HOME", "/home/someone"), configuration("XDG_CONFIG_HOME", "/etc/configuration");
    CHECK_EQ(linux::preferencesFolder(), "/etc/configuration/preferences");
    ScopedEnvironment relative("XDG_CONFIG_HOME", "configuration");
    CHECK_EQ(linux::preferencesFolder(), "/home/someone/.config/preferences");
}

TEST(OneLogCallIsOneLine) {
    CHECK_EQ(linux::withVisibleControls("a\nb\t\x1b[1m\x7f \xC2\x9B \xC3\xA9 \xC2\xA0"),
             "a\\nb\\t\\x1B[1m\\x7F \\xC2\\x9B \xC3\xA9 \xC2\xA0");
}
