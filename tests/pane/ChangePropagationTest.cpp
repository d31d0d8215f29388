#include "tests/pane/PaneFixture.h"

using namespace platform;

TEST(ABurstOfChangesIsBroadcastOnceTwoSecondsAfterItsLast) {
    PaneFixture f;
    f.world.loadRuntime();
    f.setStored("Log Stuff", true);
    f.open();
    for (int i = 0; i < 3; ++i) {
        f.clickOption("ShowSets");
        f.world.runLoop.advance(0.5);
    }
    f.world.takeJournal();
    f.world.runLoop.advance(1.4);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{});
    f.world.runLoop.advance(0.2);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"broadcast com.tarnwick.typeslate PrefChanged"});
    f.world.runLoop.advance(10);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{});
    f.click(f.button("logStuff"), "toggleLogging:");  // a new timer after the first has fired, and no post
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"set Log Stuff", "synchronize"});
    f.world.runLoop.advance(2);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"broadcast com.tarnwick.typeslate PrefChanged"});
}

TEST(TheTimerIsLoggedOnlyWhileLoggingIsOn) {
    PaneFixture f;
    f.setStored("Log Stuff", true);
    f.open();
    f.clickOption("ShowSets");
    REQUIRE(f.world.log.lines.size() == 1);
    CHECK(f.world.log.lines[0].starts_with("Built <timer> (0x"));
    f.world.runLoop.advance(1);
    f.clickOption("ShowSets");
    CHECK_EQ(f.world.log.lines.at(1), "Old date: 2001-09-09 01:46:42 +0000");
    CHECK_EQ(f.world.log.lines.at(2), "New date: 2001-09-09 01:46:43 +0000 (should be 2001-09-09 01:46:43 +0000 )");
    f.world.runLoop.advance(5);
    CHECK_EQ(f.world.log.lines.at(3), "Boom!");
    f.setStored("Log Stuff", false);
    f.clickOption("ShowSets");
    f.world.runLoop.advance(5);
    CHECK_EQ(f.world.log.lines.size(), std::size_t{4});
}
