#include "tests/pane/PaneFixture.h"

using namespace platform;

namespace {

std::string shown(const CellValue& cell) {
    if (cell.lines.size() != 2 || cell.lines[0].small || !cell.lines[1].small) return "(not two lines)";
    return cell.lines[0].text + " / " + cell.lines[1].text;
}

}  // namespace

TEST(EachKindOfEntryShowsItsNamePlaceAndIcon) {
    PaneFixture f;
    f.world.applications.items = {
        {"/new/Draw.app", "Draw!", kUnknownCreator, "org.draw"},
        {"/new/Write.app", "Write!", std::bit_cast<FourCharCode>(std::array{'W', 'R', 'T', 'E'}), ""},
        {"/new/Odd.app", "Odd!", std::bit_cast<FourCharCode>(std::array{'\xE9', 'R', 'T', 'E'}), "\xE9"}};
    f.world.files.existing.insert({"/new/Draw.app", "/new/Write.app", "/new/Odd.app", "/there", "/\xE9"});
    std::string list;
    const auto rows = cells<3>("rows.txt");
    for (const auto& row : rows) list += (list.empty() ? "" : ";") + row[0];
    f.setList(list);
    f.open();
    CHECK_EQ(f.table().numberOfRows(), static_cast<int>(rows.size()));
    int row = 0;
    for (const auto& [entry, lines, icon] : rows) {
        CONTEXT(entry);
        CHECK_EQ(shown(f.pane->tableView_objectValueForTableColumn_row(f.table(), "name", row)),
                 (lines.starts_with('/') ? " " : "") + lines);
        CHECK_EQ(fake::imageName(f.pane->tableView_objectValueForTableColumn_row(f.table(), "13", row).image), icon);
        ++row;
    }
    CHECK_EQ(f.pane->pathForIndex(1), "/new/Draw.app");
    CHECK(!f.pane->pathForIndex(0) && !f.pane->pathForIndex(row));
    fake::TableView other;
    CHECK_EQ(f.pane->numberOfRowsInTableView(other), 0);
    CHECK(f.pane->tableView_objectValueForTableColumn_row(other, "name", 0).lines.empty());
    f.button("exRemoveAppButton").enabled = true;
    f.pane->tableViewSelectionDidChange({kTableViewSelectionDidChange, &other});
    CHECK(f.button("exRemoveAppButton").enabled);
}

TEST(ARowIsLookedForOnceWhenItIsPainted) {
    PaneFixture f;
    f.world.applications.items = {{"/a.app", "A", kUnknownCreator, "org.a"}};
    f.setList("Global; Identifier A org.a; RegEx N ?x; RegEx M ?x");
    f.open();
    auto look = [&](const char* column) {
        return f.pane->tableView_objectValueForTableColumn_row(f.table(), column, 1);
    };
    f.world.applications.queries = 0;
    CHECK(look("13").isPale);
    f.world.applications.items[0].name = "B";
    CHECK_EQ(shown(look("name")), "A / <<Not Found On Computer>>");
    CHECK_EQ(f.world.applications.queries, 1);
    CHECK_EQ(shown(look("name")), "B / <<Not Found On Computer>>");
    CHECK_EQ(f.world.expressions.compiled, 0);  // of what is not in sight
}

TEST(GlobalEntryComesFirstInTwoSteps) {
    for (const auto& [before, once, twice, journal] : cells<4>("global.txt")) {
        CONTEXT(before);
        PaneFixture f;
        f.setList(before);
        f.load();
        f.table().setDataSource(&*f.pane);
        f.table().rows = 99;
        f.world.takeJournal();
        f.pane->makeSureGlobalIsFirst();
        CHECK_EQ(f.list(), entries(once));
        CHECK_EQ(f.world.takeJournal(), journal.empty() ? fake::Journal{} : fake::Journal{journal});
        CHECK_EQ(f.table().rows, journal.empty() ? 99 : -1);  // to be asked for anew
        f.pane->makeSureGlobalIsFirst();
        CHECK_EQ(f.list(), entries(twice));
    }
    CHECK_EQ(settings::newGlobalEntry().description(),
             "{Name = Global; Type = Global; Settings = {Enabled = 1; ShowFontInFace = 1; DupeHandling = 1; "
             "ShowSets = 1; ShowIcons = 1; HierarchicalMenu = 1; AllFontsGroup = 1; ScriptSort = 0;};}");
}

TEST(NewEntriesTakeTheSettingsOfElementZero) {
    PaneFixture f;
    f.setList("Path A /a FontSize=9");
    f.pane.emplace(f.world.platform());
    CHECK_EQ(f.pane->getDefaultSettingsBasedOnGlobal(), entry("Path A /a FontSize=9")["Settings"]);
    CHECK_EQ(f.pane->getDefaultSettingsBasedOnGlobal(), settings::newGlobalEntry()["Settings"]);
}
