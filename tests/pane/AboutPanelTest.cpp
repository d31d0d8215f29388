#include "tests/pane/PaneFixture.h"

using namespace platform;

namespace {

constexpr double kTick = 0.05;

struct Fixture : PaneFixture {
    Fixture() {
        TSPreferencePane::sGreatestAboutPosition = 0;
        world.paneBundle.resources.insert("About.rtfd");
        open();
        text().rect.size.height = 304;
        text().scrollView.size.height = 300;
        button("aboutCloseButton").window = &panel("aboutPanel");
    }
    fake::TextView& text() { return interface->get<fake::TextView>("aboutTextView"); }
    void about() { act("doAbout:", "aboutButton"); }
    std::vector<double> positionsAfter(int ticks) {
        text().visible.clear();
        world.runLoop.advance(kTick * ticks + kTick / 2);
        return std::move(text().visible);
    }
};

}  // namespace

TEST(TheTextRollsAndStartsAgainAtEitherEnd) {
    const std::tuple<const char*, std::uint32_t, int, std::vector<double>> cases[] = {
        {"forward", 0, 6, {1, 2, 3, 0, 1, 2}},
        {"left Option, from the top", 0x0800, 6, {4, 3, 2, 1, 4, 3}},
        {"right Option", 0x4000, 1, {4}},
        {"Shift", 0x0200, 2, {1, 2}},
    };
    Fixture f;
    for (const auto& [label, keys, ticks, positions] : cases) {
        CONTEXT(label);
        f.world.toolkit.keyModifiers = keys;
        f.text().text.clear();
        f.about();
        CHECK(f.panel("aboutPanel").isOpen);
        CHECK_EQ(f.text().text, "rich /Pane.prefPane/About.rtfd");
        CHECK_EQ(f.text().visible, std::vector<double>{0});
        CHECK_EQ(f.positionsAfter(ticks), positions);
        f.act("ripSheet:", "aboutCloseButton");
        CHECK(!f.panel("aboutPanel").isOpen);
    }
    // The end stays where the first step found it.
    f.world.toolkit.keyModifiers = 0x0800;
    f.text().rect.size.height = 1000;
    f.about();
    CHECK_EQ(f.positionsAfter(1), std::vector<double>{4});
}

TEST(TheSheetOpensOnceAndNothingMovesWithoutThePane) {
    Fixture f;
    f.about();
    CHECK_EQ(f.positionsAfter(2), std::vector<double>{1, 2});
    f.about();  // the button behind the sheet
    CHECK_EQ(f.text().visible, std::vector<double>{});
    f.act("ripSheet:", "aboutCloseButton");
    CHECK_EQ(f.positionsAfter(3), std::vector<double>{});
    CHECK_EQ(f.world.takeJournal(), fake::Journal{});  // nobody asked to leave
    f.about();
    CHECK(f.pane->shouldUnselect() == UnselectReply::Later);
    f.panel("aboutPanel").endSheet(0);  // by Escape, past the button
    CHECK(!f.panel("aboutPanel").isOpen);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"reply yes"});
    CHECK_EQ(f.positionsAfter(3), std::vector<double>{});
    f.about();
    f.pane.reset();
    CHECK_EQ(f.positionsAfter(3), std::vector<double>{});
}
