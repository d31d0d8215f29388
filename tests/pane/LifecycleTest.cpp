#include "tests/pane/PaneFixture.h"

using namespace platform;

namespace {

constexpr const char* kUserModule = "/home/user/Library/Plinthworks/Typeslate.plinth";
constexpr const char* kLocalModule = "/Library/Plinthworks/Typeslate.plinth";
constexpr const char* kDisabledModule = "/Library/Plinthworks (disabled)/Typeslate.plinth";
constexpr const char* kBadged =
    "host icon := host icon + image /Pane.prefPane/Typeslate.png (0, 0, 128, 128) to (64, 0, 64, 64)";
constexpr const char* kMissingText = "The Plinth component is either disabled or not installed.";

}  // namespace

TEST(ModuleAndUserDecideTheStatusLine) {
    struct Case {
        const char* label;
        std::uint32_t user;
        std::vector<const char*> existing;
        bool disabled;
        const char* status;
        bool switchIsEnabled, switchIsOn;
    };
    const Case cases[] = {
        {"user's module", 1000, {kUserModule}, false, "", true, true},
        {"shared module, switched off", 1000, {kLocalModule}, true, "", true, false},
        {"no module", 1000, {}, false, kMissingText, false, true},
        {"disabled module", 1000, {kDisabledModule}, false, kMissingText, false, true},
        {"root", 0, {kUserModule}, false, "You are logged in as root. Plinth is disabled.", false, false},
    };
    for (const Case& c : cases) {
        CONTEXT(c.label);
        PaneFixture f;
        f.world.files.existing = {c.existing.begin(), c.existing.end()};
        f.world.system.userID = c.user;
        f.setStored("Disabled", c.disabled);
        f.open();
        CHECK_EQ(f.field("statusField").text, c.status);
        CHECK_EQ(f.field("statusField").tone == TextTone::Alert, *c.status != 0);
        CHECK_EQ(f.button("enabledCheckbox").enabled, c.switchIsEnabled);
        CHECK_EQ(f.button("enabledCheckbox").on, c.switchIsOn);
        CHECK_EQ(f.stored("Disabled"), PropertyList(c.disabled));
    }
}

TEST(ModuleIsLookedForInOrderAndAtEachShow) {
    PaneFixture f;
    f.world.files.existing.clear();
    f.open();
    f.pane->willSelect();
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"exists /home/user/Library/Plinthworks/Typeslate.plinth",
                                                  "exists /Library/Plinthworks/Typeslate.plinth",
                                                  "exists /home/user/Library/Plinthworks (disabled)/Typeslate.plinth",
                                                  "exists /Library/Plinthworks (disabled)/Typeslate.plinth", kBadged});
    CHECK(f.pane->shouldUnselect() == UnselectReply::Now);
    f.pane->willUnselect();
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"host icon := host icon"});
    f.world.files.existing.insert(kUserModule);
    f.pane->willSelect();
    CHECK_EQ(f.field("statusField").text, "");
    CHECK(f.button("enabledCheckbox").enabled);
}

TEST(FirstStartStoresAGlobalEntryAndSelectsIt) {
    PaneFixture f;
    f.open();
    CHECK_EQ(f.list(), PropertyList::array({settings::newGlobalEntry()}));
    CHECK_EQ(f.table().selected, 0);
    CHECK(f.box("Enabled").on);
    CHECK(!f.box("ScriptSort").on);
    CHECK_EQ(f.table().imageColumn, "13");
    CHECK(f.table().takesFiles);
    CHECK_EQ(f.field("versionField").text, "1.2.3");
    CHECK(f.field("versionField").toolTip.starts_with("Born on "));
    CHECK(!f.button("exRemoveAppButton").enabled);
}

TEST(AnUnreadableStoreIsNotRepairedAsAnEmptyOne) {
    PaneFixture f;
    f.world.preferences.readable = false;
    f.open();
    CHECK_EQ(f.table().numberOfRows(), 0);
    f.world.applications.items = {{"/a/Plain.app", "Plain", kUnknownCreator, ""}};
    f.pane->tableView_acceptDrop(f.table(), {"/a/Plain.app"});
    f.world.preferences.readable = true;
    CHECK_EQ(f.list(), PropertyList());
}

TEST(VeryOldSystemsGetNoNewFeatures) {
    using Version = std::optional<std::uint32_t>;
    for (const auto& [version, takesFiles] : {std::pair{Version(0x1014), false}, {0x1015, true}, {{}, true}}) {
        PaneFixture f;
        f.world.system.known.clear();
        if (version) f.world.system.known[fake::System::kVersion] = *version;
        f.open();
        CHECK_EQ(f.table().takesFiles, takesFiles);
        CHECK_EQ(f.field("versionField").text, takesFiles ? "1.2.3" : "");
    }
}

TEST(ThePaneRunsWithoutAnyInterfaceObject) {
    PaneFixture f;
    f.pane.emplace(f.world.platform());
    CHECK_EQ(f.pane->mainNibName(), "TSPrefs");
    f.pane->awakeFromNib();
    f.pane->mainViewDidLoad();
    f.pane->willSelect();
    View stranger;
    f.pane->setOutlet("noSuchOutlet", stranger);
    f.pane->setOutlet("exTableView", stranger);  // of the wrong kind
    f.pane->performAction("noSuchAction:", stranger);
    f.pane->performAction("togglePerAppPrefs:", stranger);
    f.pane->displayDialog_forError_andTitle("It failed.", kFileNotFound, "Sorry");
    CHECK_EQ(f.world.journal.back(), "alert Sorry: It failed. <-43>");
    CHECK(!f.pane->isCocoaApp("/Applications/Any.app"));
}

TEST(TheBadgeFillsTheLowerRightQuarter) {
    const std::string typeslate = "host icon + image /Pane.prefPane/Typeslate.png ";
    const std::tuple<Size, const char*, std::string> cases[] = {
        {{128, 128}, "Typeslate.png", typeslate + "(0, 0, 128, 128) to (64, 0, 64, 64)"},
        {{127, 127}, "Typeslate.png", typeslate + "(0, 0, 127, 127) to (64, 0, 63, 63)"},
        {{64, 48}, "/any/can.icns", "host icon + image /Pane.prefPane/can.icns (0, 0, 64, 48) to (32, 0, 32, 32)"},
        {{128, 128}, "missing.png", "host icon"},
        {{128, 128}, "", "host icon"},
    };
    for (const auto& [size, file, badged] : cases) {
        CONTEXT(file);
        PaneFixture f;
        f.open();
        f.world.toolkit.iconSize = size;
        CHECK_EQ(fake::imageName(f.pane->overlayIcon_withProductIcon(f.world.toolkit.icon, file)), badged);
    }
}

TEST(StartUpChecksTheFontNameCache) {
    PaneFixture f;
    f.pane.emplace(f.world.platform());
    f.pane->awakeFromNib();
    CHECK_EQ(f.world.log.lines.back(), "Rebuilding");
    CHECK(!f.world.preferences.copyDomain("com.tarnwick.typeslate.AdobeNames"));  // there is no name database
}
