// The store on real files: sharing, links, owners, obstacles, damage.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <filesystem>

#include "linux/system/SystemLog.h"
#include "tests/store/StoreSupport.h"

using namespace check;
namespace fs = std::filesystem;

namespace {

struct Stage {
    TemporaryFolder temporary;
    std::string folder = temporary / "preferences", path = folder + "/" + kDomain + ".plist";
    Stage() { fs::create_directory(folder); }
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            if (!entry.path().filename().string().starts_with(".")) names.push_back(entry.path().filename());
        return names;
    }
};

std::string encoded(const PropertyList& value, bool xml = false) {
    return encodePropertyList(value,
                              xml ? propertylist::PropertyListFormat::XML : propertylist::PropertyListFormat::Binary);
}
const PropertyList kTheirs = PropertyList::dictionary({{"theirs", 1}});

ino_t inodeOf(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}
mode_t modeOf(const std::string& path) { return static_cast<mode_t>(fs::status(path).permissions()); }

}  // namespace

TEST(WhatIsStoredAlreadyIsNotWrittenAgain) {
    Stage stage;
    FaultyFileAccess files;
    Store a(stage.folder, files), b(stage.folder);
    int observed = 0;
    a.preferences.setSynchronizeObserver(kDomain, [&] { ++observed; });
    CHECK(a.write("none", {}) && !fs::exists(stage.path));
    CHECK(a.write("key", 1));
    ino_t first = inodeOf(stage.path);
    CHECK(a.write("key", 1) && inodeOf(stage.path) == first);
    CHECK_EQ(observed, 3);
    CHECK(b.write("key", 2) && a.write("key", 1));
    CHECK_EQ(Store(stage.folder)["key"], PropertyList(1));
    // Of a write that failed nobody knows how far it came.
    int flushes = 0;
    files.hook = [&](FileAccess::Call call, std::size_t&, int) {
        return call == FileAccess::Call::Flush && ++flushes == 2 ? -EIO : 0;
    };
    CHECK(!a.write("key", 3) && a.synchronize());
    CHECK_EQ(flushes, 4);
    CHECK_EQ(observed, 5);
}

TEST(ServicesShareADomainKeyByKey) {
    TemporaryFolder temporary;
    std::string folder = temporary / "new/preferences";
    Store a(folder), b(folder);
    for (const char* key : {"one", "two", "three"}) a.set(key, key);
    CHECK_EQ(a["two"].stringValue(), "two");
    CHECK(!b["two"]);
    CHECK(a.synchronize() && b.synchronize());
    CHECK_EQ(modeOf(folder + "/" + kDomain + ".plist"), 0600u);
    CHECK_EQ(modeOf(folder), 0700u);
    CHECK_EQ(b.preferences.domains(), std::vector<std::string>{kDomain});

    a.set("two", {});
    a.set("four", 4);
    b.set("one", "b's");
    b.set("five", true);
    CHECK(!a["two"] && b["two"]);
    CHECK(a.synchronize() && b.synchronize() && a.synchronize());
    std::string keys;
    for (const auto& entry : a.preferences.copyDomain(kDomain).entries())
        keys += std::string(entry.key.stringValue()) + " ";
    CHECK_EQ(keys, "one three four five ");
    CHECK_EQ(a["one"].stringValue(), "b's");

    for (const char* key : {"one", "three", "four", "five"}) a.set(key, {});
    CHECK(a.synchronize() && b.synchronize());
    CHECK(!b["one"]);
    CHECK(propertylist::decodePropertyList(readFile(folder + "/" + kDomain + ".plist")).isDictionary());
    fs::remove(folder + "/" + kDomain + ".plist");
    CHECK(a.write("six", 6) && b.synchronize());
    CHECK_EQ(b["six"].integerValue(), 6);
}

TEST(ChangesOfOthersAreNoticedWhateverTheTimeStampsSay) {
    Stage stage;
    auto values = [](int i) { return PropertyList::dictionary({{"n", 100 + i % 800}}); };
    REQUIRE(writeFile(stage.path, encoded(values(0))));
    struct stat first;
    REQUIRE(stat(stage.path.c_str(), &first) == 0);
    Store store(stage.folder);
    for (int i = 1; i < 300; ++i) {
        CONTEXT(std::to_string(i));
        if (i % 2) CHECK(store.write("n", 100));
        if (i % 3 == 0) fs::remove(stage.path);  // the next file is often given the same inode number
        if (i % 3 == 1) {
            std::string bytes = encoded(values(i));  // in place, and often within the same clock tick
            int file = open(stage.path.c_str(), O_WRONLY | O_CLOEXEC);
            CHECK(pwrite(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
            close(file);
        } else {
            CHECK(writeFile(stage.path, encoded(values(i))));
        }
        timespec times[] = {first.st_atim, first.st_mtim};
        CHECK_EQ(utimensat(AT_FDCWD, stage.path.c_str(), times, 0), 0);
        CHECK(store.synchronize());
        CHECK_EQ(store["n"].integerValue(), 100 + i % 800);
    }
}

TEST(WhatCannotBeReadIsNotTakenForEmpty) {
    for (const char* obstacle :
         {"mkdir $P", "mkfifo $P", "ln -s $P $P", "ln -s /dev/zero $P", "touch $P-file; ln -s $P-file/x $P",
          "printf bplist00 > $P; truncate -s 536870913 $P", "cp $V $P; chmod 0 $P"})
        CHECK(inAnotherProcess(
            [&] {
                CONTEXT(obstacle);
                Stage stage;
                ScopedEnvironment path("P", stage.path.c_str()), valid("V", (stage.temporary / "valid").c_str());
                REQUIRE(writeFile(stage.temporary / "valid", encoded(kTheirs)) && std::system(obstacle) == 0);
                auto before = stage.files();
                Store store(stage.folder);
                bool good = !store["theirs"] && !store.preferences.isReadable(kDomain) && store.log.lines.size() == 1;
                good &= !store.write("mine", 2) && !store.preferences.isReadable(kDomain) &&
                        store["mine"].integerValue() == 2;
                good &= store.log.lines.size() == 2 && stage.files() == before;
                fs::rename(stage.path, stage.temporary / "elsewhere");
                writeFile(stage.path, encoded(kTheirs));
                good &=
                    store.preferences.isReadable(kDomain) && store["theirs"].integerValue() == 1 && store.synchronize();
                Store reader(stage.folder);
                CHECK(good && reader["theirs"].integerValue() == 1 && reader["mine"].integerValue() == 2);
                chmod((stage.temporary / "elsewhere").c_str(), 0700);
                return good;
            },
            true));
}

TEST(DamagedFilesAreMovedAside) {
    const std::string whole =
        encoded(PropertyList::dictionary({{"theirs", 1}, {"list", PropertyList::array({1, "two"})}}));
    std::vector<std::string> damaged = {encoded("a string"), encoded(kTheirs, true).substr(0, 150), "\n", "{}"};
    for (std::size_t length = 0; length < whole.size(); ++length) damaged.push_back(whole.substr(0, length));
    for (const std::string& bytes : damaged) {
        CONTEXT(std::to_string(bytes.size()) + " bytes");
        Stage stage;
        REQUIRE(writeFile(stage.path, bytes));
        Store store(stage.folder);
        CHECK(!store["theirs"] && store.preferences.isReadable(kDomain));
        auto files = stage.files();
        REQUIRE(files.size() == 1 && files[0].starts_with(kDomain + ".plist.damaged-20"));
        CHECK_EQ(readFile(stage.folder + "/" + files[0]), bytes);
        CHECK(store.log.lines.size() == 1 && store.log.lines[0].find(files[0]) != std::string::npos);
        REQUIRE(store.write("mine", 2) && writeFile(stage.path, bytes));
        CHECK(store.write("mine", 3) && stage.files().size() == 3);  // the second one found a name of its own
        CHECK_EQ(Store(stage.folder)["mine"].integerValue(), 3);
    }
}

TEST(DamageThatCannotBeMovedOrHasBeenRepaired) {
    Stage stage;
    FaultyFileAccess files;
    REQUIRE(writeFile(stage.path, "cut"));
    files.hook = [](auto call, std::size_t&, int) { return call == FileAccess::Call::RenameExclusive ? -EPERM : 0; };
    Store store(stage.folder, files);
    CHECK(!store["theirs"] && !store.preferences.isReadable(kDomain) && !store.write("mine", 2));
    CHECK_EQ(readFile(stage.path), "cut");
    files.hook = [&](auto call, std::size_t&, int) {
        if (call == FileAccess::Call::Lock) CHECK(writeFile(stage.path, encoded(kTheirs)));
        return 0;
    };
    CHECK(store.synchronize());
    CHECK_EQ(stage.files(), std::vector{kDomain + ".plist"});
    CHECK(store["theirs"].integerValue() == 1 && store["mine"].integerValue() == 2);
    // A file system without the exclusive rename.
    files.hook = [](auto call, std::size_t&, int) { return call == FileAccess::Call::RenameExclusive ? -EINVAL : 0; };
    REQUIRE(writeFile(stage.path, "cut"));
    CHECK(store.write("mine", 3));
    CHECK_EQ(stage.files().size(), 2u);
}

TEST(LinksModesAndOwnersAreKept) {
    for (const auto& [label, link, targetExists, succeeds] : {std::tuple{"link", "../elsewhere/real", true, true},
                                                              {"dangling", "../elsewhere/real", false, true},
                                                              {"link to a link", "hop", true, true},
                                                              {"no such folder", "../nowhere/real", false, false}}) {
        CONTEXT(label);
        Stage stage;
        std::string target = stage.temporary / "elsewhere/real";
        fs::create_directory(stage.temporary / "elsewhere");
        fs::create_symlink("../elsewhere/real", stage.folder + "/hop");
        fs::create_symlink(link, stage.path);
        if (targetExists) REQUIRE(writeFile(target, encoded(kTheirs, true)) && chmod(target.c_str(), 0640) == 0);
        if (targetExists && geteuid() == 0) REQUIRE(chown(target.c_str(), 12345, 54321) == 0);
        Store store(stage.folder);
        CHECK_EQ(store["theirs"].integerValue(), targetExists ? 1 : 0);
        CHECK_EQ(store.write("mine", 2), succeeds);
        CHECK_EQ(store["mine"].integerValue(), 2);
        CHECK_EQ(fs::read_symlink(stage.path).string(), link);
        if (!succeeds) continue;
        CHECK_EQ(modeOf(target), targetExists ? 0640u : 0600u);
        struct stat status;
        CHECK(stat(target.c_str(), &status) == 0 && S_ISREG(status.st_mode));
        if (targetExists && geteuid() == 0) CHECK(status.st_uid == 12345 && status.st_gid == 54321);
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
            bool good =
                store["theirs"].integerValue() == 1 && !store.write("mine", 2) && store["mine"].integerValue() == 2;
            return good && store.preferences.isReadable(kDomain) && store.log.lines.size() == 1;
        },
        true));
    CHECK_EQ(readFile(stage.path), encoded(kTheirs));
    chmod(stage.folder.c_str(), 0777);
    CHECK(inAnotherProcess([&] { return Store(stage.folder).write("mine", 2); }, true));
    struct stat status;
    CHECK(stat(stage.path.c_str(), &status) == 0 && (status.st_mode & 0777) == 0644);
    if (geteuid() == 0) CHECK(status.st_uid == 65534);  // it could not be given to its old owner
    CHECK_EQ(Store(stage.folder)["theirs"].integerValue(), 1);
}

TEST(RootLeavesAUsersFolderTheUsers) {
    if (geteuid() != 0) return;
    TemporaryFolder temporary;
    REQUIRE(chown(temporary.path().c_str(), 65534, 65534) == 0);
    CHECK(Store(temporary / "preferences").write("root's", 1));
    CHECK(inAnotherProcess([&] { return Store(temporary / "preferences").write("mine", 2); }, true));
}

TEST(NamesThatAreNoDomains) {
    Stage stage;
    for (const std::string& name : {std::string(), std::string("."), std::string(".."), std::string("../x"),
                                    std::string("a\0b", 3), std::string(201, 'x')}) {
        CONTEXT(name);
        Store store(stage.folder);
        CHECK(store.preferences.synchronize(name));
        store.preferences.setValue("key", 1, name);
        CHECK(!store.preferences.copyValue("key", name) && !store.preferences.synchronize(name));
        CHECK_EQ(store.log.lines.size(), 1u);
    }
    Store store(stage.folder);
    std::string longest(DiskPreferences::kLongestDomainName, 'x');
    store.preferences.setValue("key", 1, longest);
    CHECK(store.preferences.synchronize(longest));
    CHECK_EQ(store.preferences.domains(), std::vector{longest});
    REQUIRE(writeFile(stage.folder + "/" + longest + ".plist", "cut"));
    CHECK(store.preferences.synchronize(longest) && !store.preferences.copyValue("key", longest));
}

TEST(AForkedCopyDoesNotFreeTheLock) {
    TemporaryFolder temporary;
    auto transaction = std::make_unique<linux::Transaction>(FileAccess::system(), temporary / "x.plist");
    REQUIRE(!transaction->begin());
    CHECK(inAnotherProcess([&] { return transaction.reset(), true; }));
    auto isFree = [&] {
        int file = open((temporary / ".x.plist.lock").c_str(), O_RDWR | O_CLOEXEC);
        bool locked = flock(file, LOCK_EX | LOCK_NB) == 0;
        return close(file), locked;
    };
    CHECK(!isFree());
    CHECK(inAnotherProcess([&] { return transaction.release(), !isFree(); }));
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
