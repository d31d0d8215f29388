#include "settings/DefaultExclusions.h"
#include "tests/pane/PaneFixture.h"

using namespace platform;

namespace {

struct Fixture : PaneFixture {
    explicit Fixture(const std::string& more = "") {
        // The bytes of a creator code lie in memory as its text says.
        auto code = [](std::array<char, 4> text) { return std::bit_cast<FourCharCode>(text); };
        world.applications.items = {
            {"/a/Both.app", "Both", code({'B', 'O', 'T', 'H'}), "org.both"},
            {"/a/Creator.app", "Creator", code({'C', 'R', 'E', 'A'}), ""},
            {"/a/Plain.app", "Plain", kUnknownCreator, ""},
            {"/a/Zero.app", "Zero", 0, ""},
            {"/a/Odd.app", "Odd", code({'\xE9', '\xE9', ' ', '?'}), "\xE9"},
            {"/a/\xE9.app", "Oddly", code({'?', '\xE9', 'a', 'b'}), ""},
            {"/\xE9/b.app", "Odder", kUnknownCreator, ""},
            {"/a/Document.txt", "Document", kUnknownCreator, "", 0},
        };
        setList("Global Global - FontSize=9;" + more);
        open();
    }
    bool drop(const std::vector<std::string>& files) { return pane->tableView_acceptDrop(table(), files); }
};

}  // namespace

TEST(ApplicationsAreAddedOnceAndMatchedByTheBestThatTheyHave) {
    for (const auto& [listed, dropped, added, logged, said] : cells<5>("adding.txt")) {
        CONTEXT(listed + "|" + dropped);
        Fixture f(listed);
        std::vector<PropertyList> expected = f.list();
        for (const PropertyList& entry : entries(added)) expected.push_back(entry);
        std::vector<std::string> files;
        std::istringstream words(dropped);
        for (std::string file; words >> file;) files.push_back(file);
        CHECK(f.drop(files));
        CHECK_EQ(f.world.host.said.text, said);
        CHECK_EQ(f.list(), expected);
        CHECK_EQ(f.table().selected, static_cast<int>(expected.size()) - 1);
        std::string line = "The following file will not be added to the application list" + logged;
        CHECK_EQ(f.world.log.lines, std::vector<std::string>(logged.empty() ? 0 : 1, line));
    }
}

TEST(DropsAreTakenByAnEnabledEntryTableOnly) {
    Fixture f;
    fake::TableView other;
    CHECK(f.pane->tableView_validateDrop(f.table()));
    CHECK(!f.pane->tableView_acceptDrop(other, {"/a/Both.app"}) && !f.drop({}));
    f.table().enabled = false;
    CHECK(!f.pane->tableView_validateDrop(f.table()));
    CHECK(!f.drop({"/a/Both.app"}));
    CHECK_EQ(f.list().size(), std::size_t{1});
    CHECK(!f.pane->tableView_writeRows_toPasteboard(f.table(), {0}));
}

TEST(ShippedExclusionsReplaceTheirKindOrAreAppended) {
    for (const auto& [before, shipped, after] : cells<3>("exclusions.txt")) {
        CONTEXT(before + "|" + shipped);
        std::vector<PropertyList> merged = entries(before);
        settings::mergeExclusions(merged, PropertyList::array(entries(shipped)));
        CHECK_EQ(merged, entries(after));
    }
}

TEST(TheMergeHappensOnceForEachVersion) {
    const std::tuple<PropertyList, PropertyList, bool> cases[] = {
        {{}, {}, true},      {true, {}, true},    {true, 999, true},     {true, 1000, false},
        {true, 1001, false}, {false, 1000, true}, {"yes", "1000", false}};
    for (const auto& [added, version, merges] : cases) {
        CONTEXT(check::show(added) + " " + check::show(version));
        PaneFixture f;
        f.world.paneBundle.resources.insert("Exclusions.plist");
        f.world.files.contents["/Pane.prefPane/Exclusions.plist"] =
            "<plist><array><dict><key>Type</key><string>Path</string><key>Data</key><string>/x</string></dict></array>"
            "</plist>";
        if (added) f.setStored("Added Default Exclusions", added);
        if (version) f.setStored("Default Exclusions Version", version);
        f.setList("Global");
        f.open();
        CHECK_EQ(f.list().size(), std::size_t{merges ? 2U : 1U});
        CHECK_EQ(f.table().numberOfRows(), static_cast<int>(f.list().size()));
        CHECK_EQ(f.stored("Default Exclusions Version"), merges ? PropertyList(1000) : version);
        CHECK_EQ(f.stored("Added Default Exclusions"), merges ? PropertyList(true) : added);
    }
}
