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
        close().window = &panel();
    }
    fake::Panel& panel() { return interface->get<fake::Panel>("aboutPanel"); }
    fake::TextView& text() { return interface->get<fake::TextView>("aboutTextView"); }
    fake::Button& close() { return button("aboutCloseButton"); }
    void about() { pane->performAction("doAbout:", button("aboutButton")); }
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
        CHECK(f.panel().isOpen);
        CHECK_EQ(f.text().text, "rich /Pane.prefPane/About.rtfd");
        CHECK_EQ(f.text().visible, std::vector<double>{0});
        CHECK_EQ(f.positionsAfter(ticks), positions);
        f.pane->performAction("ripSheet:", f.close());
        CHECK(!f.panel().isOpen);
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
    CHECK_EQ(f.world.takeJournal(), fake::Journal{});
    f.pane->performAction("ripSheet:", f.close());
    CHECK_EQ(f.positionsAfter(3), std::vector<double>{});
    CHECK_EQ(f.world.takeJournal(), fake::Journal{});  // nobody asked to leave
    f.about();
    f.pane.reset();
    CHECK_EQ(f.positionsAfter(3), std::vector<double>{});
}
