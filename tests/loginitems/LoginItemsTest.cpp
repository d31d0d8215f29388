// The pane's operations on login items, step by step.
#include "platform/LoginItems.h"
#include "tests/pane/PaneFixture.h"
#include "tests/support/Script.h"

using namespace platform;

namespace {

struct LoginItems : PaneFixture {
    LoginItems() {
        pane.emplace(world.platform());
        for (auto [path, identifier] : {std::pair{"/a/TS.app", "ts"}, {"/b/TS.app", "ts"}, {"/Other.app", "other"}})
            world.bundles.onDisk[path].identifierText = identifier;
        world.bundles.onDisk["/Nameless.app"];
        world.applications.items = {{"/entry.desktop", "Entry", kUnknownCreator, "ts"}};
    }
    void set(const PropertyList& items) {
        world.preferences.setValue(kLoginItemsKey, items, kLoginWindowDomain);
        world.takeJournal();
    }
    PropertyList items() { return world.preferences.copyValue(kLoginItemsKey, kLoginWindowDomain); }

    // In the words of login-items.txt.
    static PropertyList read(const std::string& text) {
        std::vector<PropertyList> items;
        std::istringstream words(text);
        for (std::string word; words >> word;) {
            if (word == "none") return {};
            if (word == "7") return 7;
            char mark = word.back();
            if (mark == '!' || mark == '+') word.pop_back();
            std::pair<std::string_view, PropertyList> path(kLoginItemPathKey, word), kind("Kind", 7),
                hide(kLoginItemHideKey, mark == '!');
            items.push_back(mark == '?' ? "no item" : PropertyList::dictionary({path, mark == '+' ? kind : hide}));
        }
        return PropertyList::array(std::move(items));
    }
    std::string perform(const std::string& operation) {
        Words words(operation);
        const std::string name = words.next(), first = words.next(), second = words.next();
        bool hide = first.ends_with('!');
        if (name == "add") pane->addLoginItem_hide(first.substr(0, first.size() - hide), hide);
        if (name == "remove") pane->removeLoginItem(first);
        if (name == "removePath") pane->removeLoginItemWithPath(first);
        return name != "check" ? "" : pane->isLoginItem_withPath(first, second) ? "yes" : "no";
    }
};

const fake::Journal kOneWrite = {"set AutoLaunchedApplicationDictionary", "synchronize"};

}  // namespace

TEST(OperationsOnTheList) {
    for (const auto& [label, operation, before, expected] : check::casesIn(TEST_DATA "/login-items.txt")) {
        CONTEXT(label);
        LoginItems f;
        f.set(LoginItems::read(before));
        std::string answer = f.perform(operation);
        if (!f.world.log.lines.empty()) answer += ", logged";
        CHECK(expected.ends_with(answer));
        CHECK_EQ(f.items(), LoginItems::read(expected.substr(0, expected.size() - answer.size())));
        fake::Journal journal = f.world.takeJournal();  // of one write, or of two for a repair
        CHECK_EQ(journal.size(), answer.empty() ? 2U : answer == "yes, logged" ? 4U : 0U);
        if (!journal.empty()) CHECK(journal[0].starts_with("set ") && journal.back() == "synchronize");
    }
    LoginItems f;
    f.set(LoginItems::read("/a/TS.app!"));
    f.pane->addLoginItem_hide(std::nullopt, true);
    f.pane->removeLoginItem(std::nullopt);
    f.pane->removeLoginItemWithPath(std::nullopt);
    CHECK(!f.pane->isLoginItem_withPath(std::nullopt, "/a/TS.app"));
    f.world.preferences.readable = false;  // unknown, not empty
    f.pane->addLoginItem_hide("/b/TS.app", true);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{});
    f.world.preferences.readable = true;
    CHECK(f.pane->isLoginItem_withPath("ts", "/new/TS.app"));
    CHECK_EQ(f.world.log.lines.back(),
             "[Quirklet Doctor] Login item ts found, but not in sync, repairing "
             "(was:/a/TS.app, now:/new/TS.app)");
}

TEST(TheLoadedPaneIsNoLoginItemButOnVeryOldSystems) {
    for (bool isOld : {false, true}) {
        LoginItems f;
        f.world.bundles.onDisk["/TS.app"].identifierText = settings::kSettingsDomain;
        f.set(LoginItems::read("/TS.app"));
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
