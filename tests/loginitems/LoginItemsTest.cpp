// The pane's operations on login items, step by step.
#include "platform/LoginItems.h"
#include "tests/pane/PaneFixture.h"

using namespace platform;

namespace {

PropertyList item(const char* path, bool hide) { return PropertyList::dictionary({{"Path", path}, {"Hide", hide}}); }

struct LoginItems : PaneFixture {
    LoginItems() {
        pane.emplace(world.platform());
        for (auto [path, identifier] : {std::pair{"/a/TS.app", "ts"}, {"/b/TS.app", "ts"}, {"/Other.app", "other"}})
            world.bundles.onDisk[path].identifierText = identifier;
        world.bundles.onDisk["/Nameless.app"];
    }
    void set(const PropertyList& items) {
        world.preferences.setValue(kLoginItemsKey, items, kLoginWindowDomain);
        world.takeJournal();
    }
    PropertyList items() { return world.preferences.copyValue(kLoginItemsKey, kLoginWindowDomain); }
};

const fake::Journal kOneWrite = {"set AutoLaunchedApplicationDictionary", "synchronize"};

}  // namespace

TEST(LoginItemsAreAddedAndRemovedWhole) {
    const PropertyList a = item("/a/TS.app", true), b = item("/b/TS.app", false), other = item("/Other.app", false),
                       gone = item("/gone/TS.app", true), nameless = item("/Nameless.app", false),
                       more = PropertyList::dictionary({{"Path", "/Other.app"}, {"Kind", 7}}), odd = "no item";
    auto array = [](std::vector<PropertyList> items) { return PropertyList::array(std::move(items)); };
    const std::tuple<const char*, PropertyList, std::function<void(TSPreferencePane&)>, PropertyList> cases[] = {
        {"first", {}, [](auto& p) { p.addLoginItem_hide("/a/TS.app", true); }, array({a})},
        {"twice", array({a}), [](auto& p) { p.addLoginItem_hide("/a/TS.app", true); }, array({a, a})},
        {"not an array", 7, [](auto& p) { p.addLoginItem_hide("/b/TS.app", false); }, array({b})},
        {"by identifier", array({a, more, b, gone, nameless, odd}), [](auto& p) { p.removeLoginItem("ts"); },
         array({more, gone, nameless, odd})},
        {"no such identifier", array({more}), [](auto& p) { p.removeLoginItem("TS"); }, array({more})},
        {"empty identifier", array({nameless}), [](auto& p) { p.removeLoginItem(""); }, array({nameless})},
        {"none at all", {}, [](auto& p) { p.removeLoginItem("ts"); }, array({})},
        {"by path", array({gone, a, gone, odd}), [](auto& p) { p.removeLoginItemWithPath("/gone/TS.app"); },
         array({a, odd})},
        {"by another path", array({a, odd}), [](auto& p) { p.removeLoginItemWithPath("/a/TS.app/"); }, array({a, odd})},
    };
    for (const auto& [label, before, operation, after] : cases) {
        CONTEXT(label);
        LoginItems f;
        f.set(before);
        operation(*f.pane);
        CHECK_EQ(f.items(), after);
        CHECK_EQ(f.world.takeJournal(), kOneWrite);
    }
    LoginItems f;
    f.set(array({a}));
    f.pane->addLoginItem_hide(std::nullopt, true);
    f.pane->removeLoginItem(std::nullopt);
    f.pane->removeLoginItemWithPath(std::nullopt);
    f.world.preferences.readable = false;  // unknown, not empty
    f.pane->addLoginItem_hide("/b/TS.app", true);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{});
}

TEST(ALoginItemIsFoundFromTheEndAndRepaired) {
    const PropertyList a = item("/a/TS.app", true), b = item("/b/TS.app", false), other = item("/Other.app", false);
    const std::tuple<const char*, PropertyList, const char*, const char*, bool, PropertyList> cases[] = {
        {"none stored", {}, "ts", "/a/TS.app", false, {}},
        {"in place, behind an older one", PropertyList::array({b, a, other}), "ts", "/a/TS.app", true,
         PropertyList::array({b, a, other})},
        {"only the later one counts", PropertyList::array({a, b, other}), "ts", "/a/TS.app", true,
         PropertyList::array({other, item("/a/TS.app", false)})},
        {"elsewhere", PropertyList::array({a, other}), "ts", "/new/TS.app", true,
         PropertyList::array({other, item("/new/TS.app", true)})},
        {"its bundle is gone", PropertyList::array({item("/gone/TS.app", true)}), "ts", "/gone/TS.app", false,
         PropertyList::array({item("/gone/TS.app", true)})},
    };
    for (const auto& [label, before, identifier, path, isOne, after] : cases) {
        CONTEXT(label);
        LoginItems f;
        f.set(before);
        CHECK_EQ(f.pane->isLoginItem_withPath(identifier, path), isOne);
        CHECK_EQ(f.items(), after);
        CHECK_EQ(f.world.log.lines.size(), std::size_t{before != after});
    }
    LoginItems f;
    f.set(PropertyList::array({a}));
    CHECK(!f.pane->isLoginItem_withPath(std::nullopt, "/a/TS.app"));
    CHECK(f.pane->isLoginItem_withPath("ts", "/new/TS.app"));
    CHECK_EQ(f.world.log.lines.back(),
             "[Quirklet Doctor] Login item ts found, but not in sync, repairing "
             "(was:/a/TS.app, now:/new/TS.app)");
}

TEST(TheLoadedPaneIsNoLoginItemButOnVeryOldSystems) {
    for (bool isOld : {false, true}) {
        LoginItems f;
        f.world.bundles.onDisk["/TS.app"].identifierText = settings::kSettingsDomain;
        f.set(PropertyList::array({item("/TS.app", false)}));
        f.world.system.known[fake::System::kVersion] = isOld ? 0x1014 : 0x1015;
        f.open();
        CHECK_EQ(f.items().size(), std::size_t{isOld});
    }
}

TEST(TheHelperIsFoundStartedAndAskedToQuit) {
    LoginItems f;
    const std::string longest = "/" + std::string(1018, 'l') + ".app", tooLong = "/x" + longest.substr(1);
    for (const std::string& path : {longest, tooLong}) f.world.bundles.onDisk[path].identifierText = "long";
    f.world.bundles.onDisk["/TS.app"].identifierText = settings::kSettingsDomain;
    f.world.processes.items = {
        {"", "", {}}, {"/Nameless.app", "", {}}, {tooLong, "", {}}, {"/a/TS.app", "", {}}, {"/b/TS.app", "", {}}};
    ProcessSerialNumber psn{7, 7};
    for (const char* identifier : {"", "TS", "long", "none"}) CHECK(!f.pane->findProcessByID_withPSN(identifier, psn));
    CHECK(psn == ProcessSerialNumber());
    CHECK(f.pane->findProcessByID_withPSN("ts", psn));
    CHECK_EQ(psn.low, 3U);
    f.world.processes.items.push_back({longest, "", {}});
    CHECK(f.pane->findProcessByID_withPSN("long", psn));

    f.pane->launchTSDaemon();
    f.pane->killTSDaemon();
    CHECK(f.world.applications.opened.empty() && f.world.processes.askedToQuit.empty());
    f.world.paneBundle.resources.insert("TS.app");
    f.pane->launchTSDaemon();
    f.world.processes.items.push_back({"/TS.app", "", {}});
    f.pane->launchTSDaemon();
    CHECK_EQ(f.world.applications.opened, std::vector<std::string>{"/Pane.prefPane/TS.app"});
    f.pane->killTSDaemon();
    CHECK_EQ(f.world.processes.askedToQuit, std::vector<std::uint32_t>{6});
}
