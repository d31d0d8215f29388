#include "tests/pane/PaneFixture.h"

using namespace platform;

namespace {

PropertyList regexEntry(const char* name, const char* data, int kind) {
    return PropertyList::dictionary({{"Type", "RegEx"},
                                     {"Name", name},
                                     {"Data", data},
                                     {"RegEx Type", kind},
                                     {"Settings", PropertyList::dictionary({{"FontSize", 9}})}});
}

struct Fixture : PaneFixture {
    Fixture() {
        setStored("TheExcList", PropertyList::array({settings::newGlobalEntry(), regexEntry("Wine", "^wine", 2),
                                                     entry("Path", "App", "/app")}));
        world.paneBundle.info = PropertyList::dictionary({{"CFBundleName", "Typeslate"}});
        world.paneBundle.strings["RegEx Help"] = "%@ matches.";
        open();
        button("regexSheetOK").tagValue = 1;
        for (const char* name : {"regexAdd", "regexCancel", "regexHelp"}) button(name);
        field("regexText");
        panel();
    }
    fake::Panel& panel() { return interface->get<fake::Panel>("regexPanel"); }
    fake::PopUpButton& kind() { return interface->get<fake::PopUpButton>("regexType"); }
    void add() { pane->performAction("regexNew:", button("regexAdd")); }
    void doubleClick(int row) {
        table().selectRow(row);
        pane->performAction("doubleClickTable:", table());
    }
    void press(const char* name) { pane->performAction("regexEnd:", button(name)); }
};

}  // namespace

TEST(ANewExpressionGoesToTheEndWithTheGlobalSettings) {
    Fixture f;
    f.add();
    REQUIRE(f.panel().isOpen);
    CHECK_EQ(f.field("regexName").text, "New Regular Expression");
    CHECK_EQ(f.field("regexText").text, "Typeslate matches.");
    CHECK(f.field("regexText").selectable);

    f.press("regexSheetOK");  // no expression yet
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"beep"});
    CHECK(f.panel().isOpen);

    f.field("regex").text = "[a-z]+";
    f.press("regexSheetOK");
    CHECK(!f.panel().isOpen);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"synchronize", "set TheExcList", "synchronize",
                                                  "post com.tarnwick.typeslate PrefsChanged at once"});
    CHECK_EQ(f.list()[3], PropertyList::dictionary({{"Name", "New Regular Expression"},
                                                    {"Type", "RegEx"},
                                                    {"Data", "[a-z]+"},
                                                    {"RegEx Type", 0},
                                                    {"Settings", settings::newGlobalEntry()["Settings"]}}));
    CHECK_EQ(f.table().selected, 3);
}

TEST(EditingChangesNameDataAndKindOnly) {
    Fixture f;
    f.doubleClick(1);
    REQUIRE(f.panel().isOpen);
    CHECK_EQ(f.field("regexName").text, "Wine");
    CHECK_EQ(f.field("regex").text, "^wine");
    CHECK_EQ(f.kind().row, 2);
    f.field("regexName").text = "Wine programs";
    f.field("regex").text = "\\.exe$";
    f.kind().row = 1;
    f.press("regexSheetOK");
    CHECK_EQ(f.list()[1], regexEntry("Wine programs", "\\.exe$", 1));
    CHECK_EQ(f.list().size(), std::size_t{3});
}

TEST(WhatAChangeMeetsInAListThatChangedMeanwhile) {
    const PropertyList g = settings::newGlobalEntry(), w = regexEntry("Wine", "^wine", 2),
                       b = entry("Path", "App", "/app"), edited = regexEntry("Wine", "x", 2),
                       other = regexEntry("Wine", "^wine", 0);
    MutableDictionary ticked(w);
    ticked.set("Settings", PropertyList::dictionary({{"FontSize", 9}, {"ShowSets", true}}));
    const PropertyList t = std::move(ticked).freeze();
    using Action = void (*)(Fixture&);
    const Action click = [](Fixture& f) { f.clickOption("ShowSets"); };
    const Action remove = [](Fixture& f) { f.pane->performAction("doExRemoveApp:", f.button("exRemoveAppButton")); };
    // Taking the list in fills the sheet's fields from the entry now selected; what the user typed counts.
    const Action edit = [](Fixture& f) { f.press("regexSheetOK"); };
    struct Case {
        const char* label;
        Action act;
        std::vector<PropertyList> meanwhile, expected;
        int selected;
    };
    const Case cases[] = {
        {"click", click, {g, w, b}, {g, t, b}, 1},
        {"click, another was appended", click, {g, w, b, b}, {g, t, b, b}, 1},
        {"click, it moved", click, {g, b, w}, {g, b, t}, 2},
        {"click, it was removed", click, {g, b}, {g, b}, 1},
        {"click, it was edited", click, {g, other, b}, {g, other, b}, 1},
        {"remove", remove, {g, w, b}, {g, b}, 1},
        {"remove the last", remove, {g, b, w}, {g, b}, 1},
        {"remove what is gone", remove, {g, b}, {g, b}, 1},
        {"edit, it moved", edit, {g, b, w}, {g, b, edited}, 2},
        {"edit, it was removed", edit, {g}, {g, edited}, 1},
    };
    for (const Case& c : cases) {
        CONTEXT(c.label);
        Fixture f;
        f.doubleClick(1);
        f.field("regex").text = "x";
        f.world.preferences.duringSynchronize = [&] { f.setStored("TheExcList", PropertyList::array(c.meanwhile)); };
        c.act(f);
        CHECK_EQ(f.list(), PropertyList::array(c.expected));
        CHECK_EQ(f.table().selected, c.selected);
        CHECK_EQ(f.table().numberOfRows(), static_cast<int>(c.expected.size()));
    }
}

TEST(SheetsThatDoNotOpenOrChangeNothing) {
    Fixture f;
    for (int row : {0, 2}) {
        f.doubleClick(row);
        CHECK(!f.panel().isOpen);
    }
    f.table().selected = -1;
    f.pane->performAction("doubleClickTable:", f.table());
    CHECK(!f.panel().isOpen);
    fake::TableView other;
    f.table().selectRow(1);
    f.pane->performAction("doubleClickTable:", other);
    CHECK(!f.panel().isOpen);

    PropertyList before = f.list();
    f.add();
    f.field("regexName").text = "";
    f.press("regexCancel");
    CHECK(!f.panel().isOpen);
    CHECK_EQ(f.list(), before);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{});
}

TEST(AnEntryWithoutANameStartsWithWhatItHas) {
    auto regex = [](std::initializer_list<std::pair<std::string_view, PropertyList>> values) {
        return PropertyList::dictionary(values);
    };
    const std::tuple<PropertyList, const char*, const char*> cases[] = {
        {regex({{"Type", "RegEx"}, {"Name", ""}, {"Data", "d"}}), "", ""},
        {regex({{"Type", "RegEx"}, {"Name", ""}}), "", ""},
        {regex({{"Type", "RegEx"}, {"Data", "d"}}), "New Regular Expression", "d"},
        {regex({{"Name", "n"}}), "n", ""},
    };
    for (const auto& [entry, name, expression] : cases) {
        CONTEXT(check::show(entry));
        Fixture f;
        f.setStored("TheExcList", PropertyList::array({settings::newGlobalEntry(), entry}));
        f.table().reloadData();
        f.doubleClick(1);
        CHECK(f.panel().isOpen);
        CHECK_EQ(f.field("regexName").text, name);
        CHECK_EQ(f.field("regex").text, expression);
    }
}

TEST(TheSheetGrowsWithItsHelpText) {
    Fixture f;
    f.panel().setContentSize({300, 200});
    f.field("regex").rect = {{20, 100}, {200, 20}};
    f.field("regexText").rect = {{20, 0}, {200, 10}};
    for (const char* name : {"regexSheetOK", "regexCancel", "regexHelp"}) f.button(name).rect = {{10, 0}, {80, 30}};
    f.world.paneBundle.strings["RegEx Help"] = std::string(100, 'x');  // six lines of ten points
    f.add();
    // Text from 80 down to 20, buttons from 0 down to -30: the sheet grows by 40 in each of its two passes.
    CHECK(f.field("regexText").rect == Rect{{20, 20}, {200, 60}});
    CHECK(f.button("regexHelp").rect == Rect{{10, -30}, {80, 30}});
    CHECK_EQ(f.panel().content.height, 280.0);
}

TEST(SmallActionsBesideTheSheet) {
    Fixture f;
    View sender;
    f.pane->performAction("doRegExHelp:", sender);
    f.pane->performAction("doMore:", sender);
    f.world.paneBundle.resources.insert("Typeslate ReadMe.rtfd");
    f.pane->performAction("doMore:", sender);
    f.pane->performAction("editCollections:", sender);
    f.world.applications.items = {{"/fonts.desktop", "Fonts", kUnknownCreator, "com.apple.FontBook"}};
    f.pane->performAction("editCollections:", sender);
    f.world.system.known[fake::System::kVersion] = 0x102F;
    f.pane->performAction("editCollections:", sender);
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"open https://typeslate.example/goto/regexp/",
                                                  "open /Pane.prefPane/Typeslate ReadMe.rtfd", "font panel 2"});
    CHECK_EQ(f.world.applications.opened, std::vector<std::string>{"/fonts.desktop"});
}
