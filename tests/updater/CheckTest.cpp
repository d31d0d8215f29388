// The check and the launch: what they do in which order, and what they say.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/TWVC.h"
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdaterLaunch.h"
#include "propertylist/Date.h"
#include "tests/updater/UpdaterFixture.h"

#include <algorithm>
#include <cstring>
#include <limits>

using namespace platform;
using namespace twvc;

namespace {

const std::string kLock = "lock /tmp/com.tarnwick.typeslate.updater.lock";
const std::string kLaunch = std::string("launch ") + kUpdater + " with " + kModule;
const std::string kChecking = "[Typeslate] Checking for updated versions of Typeslate (com.tarnwick.typeslate)";
const std::string kLaunched = std::string("[Typeslate] Launched the updater at ") + kUpdater;
const std::string kExists =
    "[Typeslate] Could not run the updater as the updater lock file (com.tarnwick.typeslate.updater.lock) is already "
    "in existence. Someone else is updating. A file of this name exists already";

}  // namespace

TEST(AFirstCheckRecordsThenLaunchesUnderTheLock) {
    UpdaterFixture f;
    FSRef launched;
    CHECK_EQ(f.check(false, &launched), kNoErr);
    CHECK_EQ(f.world.takeJournal(),
             fake::Journal{"set SUCheckForUpdates", "set SULastCheckDate", "set SULastRunSystemVersion", kLock, kLaunch,
                           "synchronize", "unlock"});
    CHECK_EQ(f.takeLog(), std::vector<std::string>{kChecking, kLaunched});
    CHECK_EQ(f.stored("SULastCheckDate"), PropertyList(f.world.runLoop.now()));
    CHECK_EQ(f.stored("SUCheckForUpdates"), PropertyList(true));
    CHECK_EQ(launched.path, kUpdater);
    CHECK_EQ(launched.inode, std::strlen(kUpdater));

    CHECK_EQ(f.check(false), kNoErr);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{});
}

TEST(EveryLaunchEndsWithTheLockGivenBackAndItsStatus) {
    auto couldNot = [](const std::string& what) { return "[Typeslate] Could not " + what; };
    using Lines = std::vector<std::string>;
    auto expect = [](auto spoil, OSStatus result, const fake::Journal& journal, Lines log) {
        CONTEXT(check::show(journal) + check::show(log));
        UpdaterFixture f;
        spoil(f.world);
        FSRef launched;
        auto bundle = f.world.bundles.openBundle(kModule);
        CHECK_EQ(runUpdater(f.services, bundle.get(), kDomain, &launched), result);
        CHECK_EQ(f.world.takeJournal(), journal);
        CHECK_EQ(!launched.path.empty(), std::ranges::count(log, kLaunched) == 1);
        log.insert(log.begin(), kChecking);
        CHECK_EQ(f.takeLog(), log);
    };
    expect([](auto& world) { world.launcher.createStatus = kDuplicateFile; }, kDuplicateFile, {kLock}, {kExists});
    expect([](auto& world) { world.bundles.onDisk[kModule].resources.clear(); }, kNoErr, {kLock, "unlock"}, {});
    expect([](auto& world) { world.files.folders.clear(); }, kNoErr, {kLock, "unlock"}, {});
    expect(
        [](auto& world) { world.launcher.launchStatus = kPermissionErr; }, kNoErr, {kLock, kLaunch, "unlock"},
        {couldNot("launch the updater (" + std::string(kUpdater) + ") due to error -54 occurring. Permission denied")});
    expect([](auto& world) { world.launcher.removeStatus = kFileNotFound; }, kFileNotFound,
           {kLock, kLaunch, "synchronize", "unlock"},
           {kLaunched, couldNot("delete the updater lock file (com.tarnwick.typeslate.updater.lock) due to error -43. "
                                "File not found")});
    expect([](auto& world) { world.launcher.folderStatus = kIOErr; }, kIOErr, {}, {});
}

TEST(IdentifiersThatAreNoFileNamesAreRefused) {
    UpdaterFixture f;
    auto bundle = f.world.bundles.openBundle(kModule);
    for (const std::string& id : {std::string("../../etc/passwd"), std::string("/"), std::string("a\0b", 3),
                                  std::string(5000, 'x'), std::string(243, 'x')}) {
        CHECK_EQ(runUpdater(f.services, bundle.get(), id, nullptr), kBadName);
        CHECK_EQ(f.world.takeJournal(), fake::Journal{});
    }
    CHECK_EQ(runUpdater(f.services, bundle.get(), "..", nullptr), kNoErr);
    CHECK_EQ(f.world.journal.front(), "lock /tmp/...updater.lock");
    CHECK(lockFileName(std::string(242, 'x')).has_value());
    CHECK_EQ(runUpdater(f.services, nullptr, kDomain, nullptr), kParamErr);
    CHECK_EQ(runUpdater(f.services, bundle.get(), std::nullopt, nullptr), kParamErr);
}

TEST(ModulesWithoutIdentifierOrNameAreNotChecked) {
    // The last is the lock: without one there is no check.
    const std::tuple<PropertyList, const char*, PropertyList, PropertyList, const char*> cases[] = {
        {"own", "x", "N", {}, "lock /tmp/own.updater.lock"},
        {5, "x", "N", {}, "lock /tmp/x.updater.lock"},
        {{}, "", "N", {}, ""},
        {{}, "x", "", "e", "lock /tmp/x.updater.lock"},
        {{}, "x", {}, {}, ""},
        {{}, "x", 1, "e", ""},
    };
    for (const auto& [moduleID, identifier, name, executable, expected] : cases) {
        UpdaterFixture f;
        f.module().info = PropertyList::dictionary(
            {{"PlinthModuleID", moduleID}, {"CFBundleName", name}, {"CFBundleExecutable", executable}});
        f.module().identifierText = identifier;
        CHECK_EQ(f.check(false), kNoErr);
        auto lock = std::ranges::find_if(f.world.journal, [](auto& line) { return line.starts_with("lock"); });
        CHECK_EQ(lock == f.world.journal.end() ? "" : *lock, expected);
    }
    UpdaterFixture f;
    CHECK_EQ(checkForUpdate(f.services, nullptr, true, nullptr), kParamErr);
}

TEST(WhatTheRulesSay) {
    const Date now = fake::World().runLoop.now(), login = dateByAdding(now, -599.9),
               anHourAgo = dateByAdding(now, -3600);
    const std::string daily =
        "[Typeslate] Because the version stirng of \"1.1b3\" contains an indicator it is a beta release, we are "
        "defaulting to checking for updates daily. If you wish to change it to a longer time, open the Typeslate "
        "prefpane in System Preferences.";
    const std::string newSystem =
        "[Typeslate] An update check for Typeslate needs to be performed. You have updated Mac OS X since the last "
        "Typeslate update check. Updates were last checked on 0x100408 but you're now running 0x100409";
    const std::string noLogin = "[Typeslate] Can't get login date.";
    using Lines = std::vector<std::string>;
    auto expectLog = [](std::vector<fake::Processes::Item> processes, const char* version, PropertyList last,
                        int system, const Lines& quiet, const Lines& verbose) {
        CONTEXT(check::show(verbose));
        for (const Lines* expected : {&quiet, &verbose}) {
            UpdaterFixture f;
            f.world.processes.items = processes;
            f.module().info =
                PropertyList::dictionary({{"CFBundleName", "Typeslate"}, {"CFBundleShortVersionString", version}});
            f.module().resources.clear();
            f.setStored("SULastCheckDate", last);
            f.setStored("SULastRunSystemVersion", system);
            gLogStuff = expected == &verbose;
            CHECK_EQ(f.check(true), kNoErr);
            CHECK_EQ(f.takeLog(), *expected);
        }
    };
    expectLog({{"/A/Dock.app", "com.apple.dock", {}}, {}}, "1.0", {}, 0, {},
              {"[TWVC] Bundle ID of /A/Dock.app is equal to com.apple.Dock so not checking for updates."});
    expectLog({{}, {"", "com.apple.loginwindow", login}}, "1.0", {}, 0, {},
              {"[Typeslate] The date the loginwindow was launched: 2001-09-09T01:36:40.100000Z (4/4)",
               "[Typeslate] It has not been nearly long enough since you logged in to check for updates."});
    expectLog({{}, {}}, "1.0", now, 0x100409, {}, {noLogin});
    expectLog({{}, {}}, "1.1b3", anHourAgo, 0x100409, {daily}, {noLogin, daily});
    expectLog({{}, {}}, "1.0", now, 0x100408, {newSystem, kChecking}, {noLogin, newSystem, kChecking});
}

TEST(ANewSystemTriggersOneCheckAndTheWalkIsSparedWhenOff) {
    UpdaterFixture f;
    f.setStored("SUCheckInterval", -1);
    f.check(true);
    f.check(true);
    CHECK_EQ(std::ranges::count(f.world.journal, kLaunch), 1);
    CHECK_EQ(f.stored("SULastRunSystemVersion"), PropertyList(0x100409));
    int walks = std::exchange(f.world.processes.walks, 0);
    f.setStored("SUCheckForUpdates", false);
    f.check(true);
    CHECK(walks > 0 && f.world.processes.walks == 0);
}

TEST(TheRuntimeMayHaveItsOwnUpdaterAndLog) {
    static std::string sPrinted;
    UpdaterFixture f;
    fake::Bundle& runtime = f.world.bundles.loaded["com.tarnwick.plinth"];
    auto hasNone = +[]() -> std::int32_t { return 0; };
    auto hasOne = +[]() -> std::int32_t { return 1; };
    runtime.functions["PlinthHasUpdater"] = reinterpret_cast<void*>(hasOne);
    CHECK_EQ(checkForUpdate(f.services, nullptr, true, nullptr), kNoErr);
    runtime.functions["PlinthHasUpdater"] = reinterpret_cast<void*>(hasNone);
    auto print = +[](const char* format, const char* line) { sPrinted += std::string(format) + "|" + line; };
    runtime.functions["plinthprintf"] = reinterpret_cast<void*>(print);
    CHECK_EQ(f.check(false), kNoErr);
    CHECK_EQ(sPrinted, "%s|" + kChecking + "\n%s|" + kLaunched + "\n");
    CHECK_EQ(f.takeLog(), std::vector<std::string>{});
}

TEST(SystemVersionsInDecimalNibbles) {
    constexpr FourCharCode one = fourCharCode("sys1"), two = fourCharCode("sys2"), three = fourCharCode("sys3"),
                           old = fourCharCode("sysv");
    const std::pair<std::map<FourCharCode, std::uint32_t>, std::uint32_t> cases[] = {
        {{{one, 10}, {two, 4}, {three, 9}, {old, 0x1039}}, 0x100409},
        {{{one, 10}, {two, 4}, {three, 11}}, 0x100411},
        {{{one, 10}, {two, 4}, {old, 0x1049}}, 0x100409},
        {{{one, 24}, {two, 10}, {three, 0}}, 0x241000},
        {{}, 0},
    };
    for (const auto& [known, version] : cases) {
        UpdaterFixture f;
        f.world.system.known = known;
        CHECK_EQ(systemVersion(f.services), version);
        f.world.system.known[one] = 99;  // kept, once it is known
        if (version != 0) CHECK_EQ(systemVersion(f.services), version);
    }
}

TEST(ForeignCallersReachTheSameThroughC) {
    UpdaterFixture f;
    TWVC_SetServices(nullptr);
    CHECK_EQ(TWVC_RunUpdater(kModule, kDomain, nullptr), kParamErr);
    CHECK_EQ(TWVC_GetSystemVersion(), 0U);
    TWVC_SetVersionDatePreferences(kDomain);
    char text[12];
    CHECK_EQ(GetNSStringFromDate(0, 1, 1, text, sizeof text), -1);

    TWVC_SetServices(reinterpret_cast<const TWVCServices*>(&f.services));
    TWVCFileReference launched{};
    CHECK_EQ(TWVC_CheckForUpdate(nullptr, 0, &launched), kParamErr);
    CHECK_EQ(TWVC_CheckForUpdate("/nowhere", 0, &launched), kParamErr);
    CHECK_EQ(TWVC_RunUpdater(kModule, "\xFF", &launched), kParamErr);
    CHECK_EQ(launched.path[0], '\0');
    CHECK_EQ(TWVC_GetSystemVersion(), 0x100409U);

    double login = 0;
    CHECK_EQ(TWVC_CopyLoginWindowLaunchDate(&login), 0);
    f.world.processes.items = {{"", "com.apple.LoginWindow", Date{1}}, {"", "com.apple.loginwindow", Date{2'500'000}}};
    CHECK_EQ(TWVC_CopyLoginWindowLaunchDate(&login), 1);
    CHECK_EQ(login, 2.5);

    CHECK_EQ(GetNSStringFromDate(0, 1, 2, text, sizeof text), 33);
    CHECK_EQ(std::string(text), "1970-01-01T");
    CHECK_EQ(GetNSStringFromDate(0, 1, 5, text, sizeof text), -1);
    CHECK_EQ(GetNSStringFromDate(std::numeric_limits<double>::quiet_NaN(), 1, 1, text, sizeof text), -1);
    CHECK(GetNSStringFromDate(-1e30, 1, 1, nullptr, 0) > 0);
    CHECK(!stringFromDate(f.services, "text", DateStyle::Short, DateStyle::Short));
    f.world.dates.fails = true;
    CHECK_EQ(GetNSStringFromDate(0, 1, 1, text, sizeof text), -1);
    TWVC_SetServices(nullptr);
}
