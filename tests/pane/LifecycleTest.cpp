#include "tests/pane/PaneFixture.h"

using namespace platform;

TEST(ModuleAndUserDecideTheStatusLine) {
    for (const auto& [user, module, disabled, status, isUsable, isOn] : cells<6>("status.txt")) {
        CONTEXT(user + " " + module + " " + disabled);
        PaneFixture f;
        f.world.files.existing = {module};
        f.world.system.userID = static_cast<std::uint32_t>(std::stoul(user));
        f.setStored("Disabled", valueOfWord(disabled));
        f.open();
        CHECK_EQ(f.field("statusField").text, status);
        CHECK_EQ(f.field("statusField").tone == TextTone::Alert, !status.empty());
        CHECK_EQ(f.button("enabledCheckbox").enabled, isUsable == "yes");
        CHECK_EQ(f.button("enabledCheckbox").on, isOn == "yes");
        CHECK_EQ(f.stored("Disabled"), valueOfWord(disabled));
    }
}

TEST(TheGlobalEntryIsShownFirstWhateverTheTableHadSelected) {
    for (int before : {-1, 0, 1}) {
        CONTEXT(std::to_string(before));
        PaneFixture f;
        f.setStored("Log Stuff", true);
        if (before >= 0) f.setList("Global; Path A /a");
        f.load();
        f.table().selected = before;
        f.show();
        CHECK_EQ(f.list(), entries(before < 0 ? "Global" : "Global; Path A /a"));
        CHECK(f.table().selected == 0 && f.table().asked.front() == -1);
        CHECK_EQ(f.shownOptions(), "1011001111000001 1111101111100001");
        CHECK(f.button("logStuff").on);
        CHECK(!f.button("exRemoveAppButton").enabled);
        CHECK_EQ(f.table().imageColumn, "13");
        CHECK_EQ(f.table().doubleAction, "doubleClickTable:");
        CHECK(f.field("versionField").toolTip.starts_with("Born on "));
    }
}

TEST(AnUnreadableStoreIsShownAsNothingAndNeverWritten) {
    PaneFixture f;
    f.world.preferences.readable = false;
    f.world.paneBundle.resources.insert("Exclusions.plist");
    f.load();
    for (const OptionControl& option : optionControls())
        if (auto* button = f.control(option).asButton()) button->setState(true);
    f.field("perAppFontSize").number = 9;
    auto& duplicates = f.menu("perAppDupeHandling");
    duplicates.row = 2;
    f.show();
    CHECK_EQ(f.table().numberOfRows(), 0);
    CHECK_EQ(f.shownOptions(), "0000000200000000 1000000000000000");  // the menu has no item for "none"
    f.world.applications.items = {{"/a/Plain.app", "Plain", kUnknownCreator, ""}};
    f.pane->tableView_acceptDrop(f.table(), {"/a/Plain.app"});
    CHECK_EQ(f.world.log.lines, std::vector<std::string>{"The settings cannot be read; the change is not stored."});
    f.world.preferences.readable = true;
    CHECK(f.list().empty() && !f.stored("Added Default Exclusions"));
}

TEST(ThePaneRunsWithoutAnyInterfaceObject) {
    PaneFixture f;
    f.pane.emplace(f.world.platform());
    CHECK_EQ(f.pane->mainNibName(), "TSPrefs");
    f.world.loadRuntime();
    TSPreferencePane::initialize(f.world.bundles);
    CHECK(TSPreferencePane::PlinthMessageBroadcast && !TSPreferencePane::PlinthMessageSend);  // which it lacks
    f.pane->awakeFromNib();
    CHECK_EQ(f.world.log.lines.back(), "Rebuilding");
    CHECK(!f.world.preferences.copyDomain("com.tarnwick.typeslate.AdobeNames"));  // there is no name database
    f.pane->mainViewDidLoad();
    f.pane->willSelect();
    View stranger;
    f.pane->setOutlet("noSuchOutlet", stranger);
    f.pane->setOutlet("exTableView", stranger);  // of the wrong kind
    for (const char* selector : {"noSuchAction:", "togglePerAppPrefs:", "ripSheet:"})
        f.pane->performAction(selector, stranger);
    f.pane->displayDialog_forError_andTitle("It failed.", kFileNotFound, "Sorry");
    CHECK_EQ(f.world.journal.back(), "alert Sorry: It failed. <-43>");
    CHECK(!f.pane->isCocoaApp("/Applications/Any.app"));
}
