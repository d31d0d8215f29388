#include "tests/pane/PaneFixture.h"

using namespace platform;

namespace {

// The lines of a cell, the small ones in parentheses.
std::string shown(const CellValue& cell) {
    std::string all;
    for (const AttributedLine& line : cell.lines) all += line.small ? "(" + line.text + ")" : line.text;
    return all;
}

PropertyList entryAt(const char* type, const char* name, const char* data, const char* path) {
    MutableDictionary changed(entry(type, name, data));
    changed.set("Path", path);
    return std::move(changed).freeze();
}

}  // namespace

TEST(EachKindOfEntryShowsItsNamePlaceAndIcon) {
    PaneFixture f;
    auto& world = f.world;
    world.applications.items = {
        {"/new/Draw.app", "Draw!", kUnknownCreator, "org.draw"},
        {"/new/Write.app", "Write!", std::bit_cast<FourCharCode>(std::array{'W', 'R', 'T', 'E'}), ""}};
    world.files.existing.insert({"/new/Draw.app", "/new/Write.app", "/there"});
    PropertyList regex = PropertyList::dictionary(
        {{"Type", "RegEx"}, {"Name", "Wine"}, {"Data", "^wine"}, {"RegEx Type", 1}, {"Settings", PropertyList()}});
    PropertyList wrong = PropertyList::dictionary({{"Type", 7}, {"Name", true}, {"Path", 1.5}});

    const std::tuple<PropertyList, const char*, const char*> cases[] = {
        {settings::newGlobalEntry(), "Global(Global Setting)", "image /Pane.prefPane/Typeslate.png"},
        {entryAt("Identifier", "Old", "org.draw", "/old"), "Draw!(/new/Draw.app)", "icon of /new/Draw.app"},
        {entryAt("Creator", "Old", "WRTE", "/old"), "Write!(/new/Write.app)", "icon of /new/Write.app"},
        {entryAt("Path", "There", "/there", "/there"), "There(/there)", "icon of /there"},
        {entryAt("Identifier", "Gone", "org.gone", "/gone"), "Gone(<<Not Found On Computer>>)", "generic"},
        {regex, "Wine(One: ^wine)", "image /Pane.prefPane/can.icns"},
        {"not a dictionary", "(<<Not Found On Computer>>)", "generic"},
        {wrong, "(<<Not Found On Computer>>)", "generic"},
    };
    std::vector<PropertyList> list;
    for (const auto& c : cases) list.push_back(std::get<0>(c));
    f.setStored("TheExcList", PropertyList::array(list));
    f.open();
    CHECK_EQ(f.table().numberOfRows(), static_cast<int>(std::size(cases)));
    int row = 0;
    for (const auto& [entry, lines, icon] : cases) {
        CONTEXT(check::show(entry));
        CHECK_EQ(shown(f.pane->tableView_objectValueForTableColumn_row(f.table(), "name", row)), lines);
        CHECK_EQ(fake::imageName(f.pane->tableView_objectValueForTableColumn_row(f.table(), "13", row).image), icon);
        ++row;
    }
    fake::TableView other;
    CHECK_EQ(f.pane->numberOfRowsInTableView(other), 0);
    CHECK(f.pane->tableView_objectValueForTableColumn_row(other, "name", 0).lines.empty());
}

TEST(WithoutTheAliasClassRowsStillShowWhatIsStored) {
    PaneFixture f;
    f.world.bundles.onDisk.clear();
    f.world.applications.items = {{"/new/Draw.app", "Draw!", kUnknownCreator, "org.draw"}};
    f.setStored("TheExcList",
                PropertyList::array({settings::newGlobalEntry(), entry("Identifier", "Draw", "org.draw")}));
    f.open();
    CHECK_EQ(f.pane->nameForIndex(1), "Draw");
    f.world.installAliasFramework();  // found at the next row count
    f.pane->numberOfRowsInTableView(f.table());
    CHECK_EQ(f.pane->nameForIndex(1), "Draw!");
}

TEST(SelectionDrivesTheEditor) {
    PaneFixture f;
    PropertyList settings = PropertyList::dictionary({{"ShowSets", true}});
    PropertyList regex = PropertyList::dictionary({{"Type", "RegEx"}, {"Name", "N"}, {"Data", "D"}, {"RegEx Type", 2}});
    f.setStored("TheExcList",
                PropertyList::array({settings::newGlobalEntry(), entry("Path", "A", "/a", settings), regex}));
    f.open();
    auto& table = f.table();

    table.selectRow(1);
    CHECK(f.box("ShowSets").on);
    CHECK(!f.box("Enabled").on);
    CHECK(f.button("exRemoveAppButton").enabled);
    CHECK_EQ(f.field("regex").text, "");

    table.selectRow(2);
    CHECK_EQ(f.field("regexName").text, "N");
    CHECK_EQ(f.field("regex").text, "D");
    CHECK_EQ(f.interface->get<fake::PopUpButton>("regexType").row, 2);

    table.selectRow(-1);
    CHECK_EQ(table.selected, 2);

    f.setStored("TheExcList", PropertyList::array({settings::newGlobalEntry()}));
    table.reloadData();
    table.selectRow(-1);
    CHECK_EQ(table.selected, 0);
    CHECK_EQ(f.field("regexName").text, "");
    CHECK(!f.button("exRemoveAppButton").enabled);

    fake::Button sender;
    sender.tagValue = 0;
    f.pane->performAction("changeSettings:", sender);
    CHECK_EQ(f.pane->fontSettingsForRow(5), PropertyList());
    CHECK_EQ(f.pane->fontSettingsForRow(-1), PropertyList());
}

TEST(GlobalEntryComesFirstInTwoSteps) {
    PropertyList a = entry("Path", "A", "/a", PropertyList::dictionary({{"FontSize", 9}}));
    PropertyList b = entry("Path", "B", "/b");
    PropertyList g = settings::newGlobalEntry();
    PropertyList g2 = entry("Global", "Second");
    const std::tuple<const char*, std::vector<PropertyList>, std::vector<PropertyList>, std::vector<PropertyList>, bool>
        cases[] = {
            {"empty", {}, {g}, {g}, true},
            {"in the middle", {a, g, b}, {g, a, b}, {g, a, b}, true},
            {"none", {a, b}, {a, b, g}, {g, a, b}, true},
            {"two of them", {g, a, g2}, {g, a, g2}, {g, a, g2}, false},
            {"first of two", {a, g2, g}, {g2, a, g}, {g2, a, g}, true},
            {"strangers", {PropertyList("text"), g}, {g, PropertyList("text")}, {g, PropertyList("text")}, true},
        };
    for (const auto& [label, before, once, twice, isWritten] : cases) {
        CONTEXT(label);
        PaneFixture f;
        f.setStored("TheExcList", PropertyList::array(before));
        f.world.takeJournal();
        f.pane.emplace(f.world.platform());
        f.pane->makeSureGlobalIsFirst();
        CHECK_EQ(f.list(), PropertyList::array(once));
        CHECK_EQ(f.world.takeJournal(), isWritten ? fake::Journal{"set TheExcList"} : fake::Journal{});
        f.pane->makeSureGlobalIsFirst();
        CHECK_EQ(f.list(), PropertyList::array(twice));
    }
    CHECK_EQ(g["Settings"].description(),
             "{Enabled = 1; ShowFontInFace = 1; DupeHandling = 1; ShowSets = 1; ShowIcons = 1; HierarchicalMenu = 1; "
             "AllFontsGroup = 1; ScriptSort = 0;}");
}

TEST(NewEntriesTakeTheSettingsOfElementZero) {
    PaneFixture f;
    f.setStored("TheExcList",
                PropertyList::array({entry("Path", "A", "/a", PropertyList::dictionary({{"FontSize", 9}}))}));
    f.pane.emplace(f.world.platform());
    f.connect();
    f.table().setDataSource(&*f.pane);
    CHECK_EQ(f.pane->getDefaultSettingsBasedOnGlobal(), PropertyList::dictionary({{"FontSize", 9}}));
    CHECK_EQ(f.pane->getDefaultSettingsBasedOnGlobal(), settings::newGlobalEntry()["Settings"]);
}
