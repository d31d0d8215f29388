#include "tests/pane/PaneFixture.h"

using namespace platform;

TEST(WhatAChangeMeetsInAListThatChangedMeanwhile) {
    for (const auto& [action, meanwhile, expected, selected, gone] : cells<5>("meanwhile.txt")) {
        CONTEXT(action + "|" + meanwhile);
        PaneFixture f;
        f.setList("Global; RegEx Wine ^wine .RegEx_Type=2 FontSize=9; Path App /app");
        f.open();
        f.table().selectRow(1);
        f.act("doubleClickTable:", "exTableView");
        f.field("regex").text = "x";
        f.world.preferences.duringSynchronize = [&] { f.setList(meanwhile); };
        if (action == "edit") f.act("regexEnd:", "regexSheetOK");
        if (action == "click") f.clickOption("ShowSets");
        if (action == "remove") f.act("doExRemoveApp:", "exRemoveAppButton");
        CHECK_EQ(f.list(), entries(expected));
        CHECK_EQ(f.world.takeJournal(),
                 gone.empty() ? kOneChange : fake::Journal{"set TheExcList", "synchronize", "gone " + gone});
        CHECK_EQ(std::to_string(f.table().selected), selected);
        CHECK_EQ(f.table().numberOfRows(), static_cast<int>(f.list().size()));
    }
}

TEST(TheSheetGrowsWithItsHelpText) {
    PaneFixture f;
    f.open();
    f.panel("regexPanel").setContentSize({300, 200});
    f.field("regex").rect = {{20, 100}, {200, 20}};
    f.field("regexText").rect = {{20, 0}, {200, 10}};
    for (const char* name : {"regexSheetOK", "regexCancel", "regexHelp"}) f.button(name).rect = {{10, 0}, {80, 30}};
    f.world.paneBundle.info = PropertyList::dictionary({{"CFBundleName", std::string(91, 'x')}});
    f.world.paneBundle.strings["RegEx Help"] = "%@ matches.";
    f.act("regexNew:", "regexAdd");
    CHECK_EQ(f.field("regexText").text, std::string(91, 'x') + " matches.");
    CHECK(f.field("regexText").selectable);
    // The text's six lines from 80 down to 20, buttons from 0 down to -30: the sheet grows by 40 in each of two passes.
    CHECK(f.field("regexText").rect == Rect{{20, 20}, {200, 60}});
    for (const char* name : {"regexSheetOK", "regexCancel", "regexHelp"})
        CHECK(f.button(name).rect == Rect{{10, -30}, {80, 30}});
    CHECK(f.panel("regexPanel").content == Size{300, 280});
    f.act("doExAddApp:", "addButton");  // by other means than the mouse
    CHECK(f.pane->shouldUnselect() == UnselectReply::Later);
    f.act("regexEnd:", "regexCancel");
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"reply yes"});
}
