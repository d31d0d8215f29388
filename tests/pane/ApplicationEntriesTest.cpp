#include "settings/DefaultExclusions.h"
#include "tests/pane/PaneFixture.h"

#include <cstring>

using namespace platform;

namespace {

constexpr const char* kRefusal = "The following file will not be added to the application list";

// The code whose bytes lie in memory as the text says.
FourCharCode codeInMemory(const char (&text)[5]) {
    FourCharCode code;
    std::memcpy(&code, text, sizeof code);
    return code;
}

struct Fixture : PaneFixture {
    Fixture() {
        world.applications.items = {
            {"/a/Both.app", "Both", codeInMemory("BOTH"), "org.both"},
            {"/a/Creator.app", "Creator", codeInMemory("CREA"), ""},
            {"/a/Plain.app", "Plain", kUnknownCreator, ""},
            {"/a/Zero.app", "Zero", 0, ""},
            {"/a/Document.txt", "Document", kUnknownCreator, "", 0},
        };
        setStored("TheExcList", PropertyList::array({settings::newGlobalEntry()}));
    }
    void drop(const std::vector<std::string>& files) { pane->tableView_acceptDrop(table(), files); }
};

}  // namespace

TEST(AddedApplicationsAreMatchedByTheBestThatTheyHave) {
    // The entries are without their settings; null: refused.
    const std::pair<const char*, const char*> cases[] = {
        {"/a/Both.app",
         "{Name = Both; Path = /a/Both.app; Identifier = org.both; Creator = BOTH; Type = Identifier; "
         "Data = org.both;}"},
        {"/a/Creator.app", "{Name = Creator; Path = /a/Creator.app; Creator = CREA; Type = Creator; Data = CREA;}"},
        {"/a/Plain.app", "{Name = Plain; Path = /a/Plain.app; Type = Path; Data = /a/Plain.app;}"},
        {"/a/Zero.app", "{Name = Zero; Path = /a/Zero.app; Type = Path; Data = /a/Zero.app;}"},
        {"/a/Document.txt", nullptr},
        {"/a/Missing.app", nullptr},
    };
    for (const auto& [path, expected] : cases) {
        CONTEXT(path);
        Fixture f;
        f.open();
        f.drop({path});
        CHECK_EQ(f.list().size(), std::size_t{expected ? 2U : 1U});
        CHECK_EQ(f.table().selected, expected ? 1 : 0);
        if (!expected) {
            int code = std::string_view(path) == "/a/Missing.app" ? kFileNotFound : 0;
            CHECK_EQ(f.world.log.lines, std::vector{formatted("%@(%d): %@", {kRefusal, code, path})});
            continue;
        }
        MutableDictionary added(f.list()[1]);
        CHECK_EQ(added["Settings"], f.list()[0]["Settings"]);
        added.remove("Settings");
        CHECK_EQ(std::move(added).freeze().description(), expected);
    }
}

TEST(AnApplicationIsListedOnceByTheEntrysOwnKind) {
    auto listed = [](const char* type, const char* data) { return entry(type, "Old", data); };
    const std::tuple<const char*, PropertyList, std::vector<std::string>, std::size_t> cases[] = {
        {"same identifier", listed("Identifier", "org.both"), {"/a/Both.app"}, 0},
        {"same creator", listed("Creator", "BOTH"), {"/a/Both.app"}, 0},
        {"same path", listed("Path", "/a/Both.app"), {"/a/Both.app"}, 0},
        {"other path", listed("Path", "/b/Both.app"), {"/a/Both.app"}, 1},
        {"identifier as expression", listed("RegEx", "org.both"), {"/a/Both.app"}, 1},
        {"letter case counts", listed("Identifier", "org.Both"), {"/a/Both.app"}, 1},
        {"twice in one batch", settings::newGlobalEntry(), {"/a/Plain.app", "/a/Plain.app", "/a/Both.app"}, 2},
        {"list with strangers", PropertyList(1), {"/a/Plain.app"}, 1},
    };
    for (const auto& [label, existing, dropped, added] : cases) {
        CONTEXT(label);
        Fixture f;
        f.setStored("TheExcList", PropertyList::array({settings::newGlobalEntry(), existing}));
        f.open();
        f.drop(dropped);
        CHECK_EQ(f.list().size(), 2 + added);
        CHECK(f.world.log.lines.empty());
    }
}

TEST(TheChooserDefersLeavingUntilItEnds) {
    for (int returnCode : {0, 1}) {
        Fixture f;
        f.open();
        f.pane->performAction("doExAddApp:", f.button("addButton"));
        REQUIRE(f.world.toolkit.isOpenPanelOpen());
        CHECK_EQ(f.world.toolkit.request.folder, "/Applications");
        CHECK_EQ(f.world.toolkit.request.title, "Choose an Application");
        CHECK(f.world.toolkit.request.allowsMultipleSelection && !f.world.toolkit.request.canChooseFolders);
        CHECK(f.pane->shouldUnselect() == UnselectReply::Later);
        CHECK_EQ(f.world.takeJournal(), fake::Journal{});
        f.world.toolkit.endOpenPanel({"/a/Both.app"}, returnCode);
        // A cancelled chooser stores the unchanged list all the same.
        CHECK_EQ(f.world.takeJournal(), fake::Journal{"synchronize", "set TheExcList", "synchronize", "reply yes",
                                                      "post com.tarnwick.typeslate PrefsChanged at once"});
        CHECK_EQ(f.list().size(), std::size_t{1} + static_cast<std::size_t>(returnCode));
        CHECK_EQ(f.table().visible, f.table().selected);
        CHECK(f.pane->shouldUnselect() == UnselectReply::Now);
    }
}

TEST(DropsAreTakenByAnEnabledEntryTableOnly) {
    Fixture f;
    f.open();
    fake::TableView other;
    CHECK(!f.pane->tableView_acceptDrop(other, {"/a/Both.app"}));
    f.table().enabled = false;
    CHECK(!f.pane->tableView_validateDrop(f.table()));
    CHECK(!f.pane->tableView_acceptDrop(f.table(), {"/a/Both.app"}));
    CHECK_EQ(f.list().size(), std::size_t{1});
    CHECK(!f.pane->tableView_writeRows_toPasteboard(f.table(), {0}));
}

TEST(ShippedExclusionsReplaceTheirKindOrAreAppended) {
    // Of each entry the initial of its type, its data and a mark.
    auto list = [](const std::string& text) {
        std::vector<PropertyList> all;
        for (std::size_t i = 0; i + 2 < text.size(); i += 4) {
            const char* type = text[i] == 'P' ? "Path" : text[i] == 'R' ? "RegEx" : "Creator";
            all.push_back(entry(type, "N", text.substr(i + 1, 1), PropertyList::dictionary({{"Mark", text[i + 2]}})));
        }
        return all;
    };
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"appended in order", "Pu1", "Px2 Ry2", "Pu1 Px2 Ry2"},
        {"replaced in place", "Pu1 Px1 Pv1", "Px2", "Pu1 Px2 Pv1"},
        {"all of the same kind", "Px1 Pu1 Px3", "Px2", "Px2 Pu1 Px2"},
        {"another type is no match", "Cx1", "Px2", "Cx1 Px2"},
        // The third shipped entry's index is beyond a list of two, whose first it replaces: it goes to the end.
        {"index beyond the list", "Pc1 Pb1", "Pb2 Pb3 Pc2", "Pb3 Pc2"},
    };
    for (const auto& [label, before, shipped, after] : cases) {
        CONTEXT(label);
        std::vector<PropertyList> merged = list(before);
        settings::mergeExclusions(merged, PropertyList::array(list(shipped)));
        CHECK_EQ(merged, list(after));
    }
    const PropertyList typeOnly = PropertyList::dictionary({{"Type", "Path"}}), x = list("Px2")[0];
    std::vector<PropertyList> strangers = {PropertyList("text"), PropertyList::dictionary({})};
    settings::mergeExclusions(strangers, PropertyList::array({1, typeOnly, x}));
    CHECK_EQ(strangers, std::vector<PropertyList>{"text", PropertyList::dictionary({}), typeOnly, x});
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
        f.open();
        CHECK_EQ(f.list().size(), std::size_t{merges ? 2U : 1U});
        if (merges) CHECK_EQ(f.stored("Default Exclusions Version"), PropertyList(1000));
        if (merges) CHECK_EQ(f.stored("Added Default Exclusions"), PropertyList(true));
    }
}
