#include "pane/fontcatalog/AdobeNames.h"
#include "pane/fontcatalog/FontListSearch.h"
#include "tests/fontcatalog/Files.h"
#include "tests/support/FakePlatform.h"

#include <sys/stat.h>

#include <algorithm>

using namespace fontcatalog;
using fontcatalogtest::Files;
using fontcatalogtest::Machine;
using platform::FolderDomain;
using platform::PropertyList;

namespace {

using Lines = std::vector<std::string>;

std::string listOf(const std::string& name) {
    return "%!list\n%BeginFont\nFontName:" + name + "\nFullName:" + name + " full\nOutlineFileName:" + name +
           "\n%EndFont\n";
}

Lines pathsIn(const PropertyList& array, const std::string& prefix) {
    Lines paths;
    for (const PropertyList& element : array.elements())
        paths.emplace_back(element[kPathKey].stringValue().substr(prefix.size()));
    return paths;
}

struct World : Machine {
    Files files;
    fake::Log log;
    fake::Journal journal;
    fake::Preferences preferences{journal};
    std::unique_ptr<CFPreferencesWrapper_Typeslate> cache =
        CFPreferencesWrapper_Typeslate::preferencesWithApplication(preferences, kCacheDomain);
    Catalogue catalogue;
    Context context{files, log};

    // As a new process would.
    CacheCheck start() {
        log.lines.clear();
        catalogue = {};
        return checkFontNameCache(context, cache.get(), catalogue);
    }
    bool logged(std::string_view line) const {
        return std::find(log.lines.begin(), log.lines.end(), line) != log.lines.end();
    }
    std::size_t firstOf(std::string_view part) const {
        const auto has = [&](const std::string& line) { return line.find(part) != std::string::npos; };
        return static_cast<std::size_t>(std::find_if(log.lines.begin(), log.lines.end(), has) - log.lines.begin());
    }
};

}  // namespace

TEST(SearchFindsListsInOrder) {
    World world;
    const std::string top = world.local + "TypeSpt/";
    for (const char* name :
         {"AdobeFnt08.lst", "myadobefntX.LST.bak", ".lstAdobeFnt", "b/.AdobeFnt.lst", "b/AdobeFnt.lst",
          "b/a/AdobeFnt.lst", ".hidden/AdobeFnt.lst", "AdobeFnt.ls", "AdobeFn.lst", "c.lst/x"})
        World::write(top + name, "x");
    std::filesystem::create_directories(top + "AdobeFntFolder.lst");
    World::link("..", top + "b/loop");
    World::link(".", top + "AdobeFntLoop.lst");
    World::link("b/AdobeFnt.lst", top + "AdobeFntLink.lst");
    World::link("nowhere", top + "AdobeFntDangling.lst");
    ::mkfifo((top + "AdobeFntPipe.lst").c_str(), 0600);
    World::write(top + "AdobeFnt\xFF.lst", "no text");
    World::write(world.user + "TypeSpt/AdobeFnt.lst", "x");

    const PropertyList array = getAdobeFilesArray(world.files, world.log);
    CHECK_EQ(
        pathsIn(array, world.temporary.path()),
        Lines{"/home/.local/share/Adobe/TypeSpt/AdobeFnt.lst", "/usr/local/share/Adobe/TypeSpt/AdobeFnt08.lst",
              "/usr/local/share/Adobe/TypeSpt/AdobeFntLink.lst", "/usr/local/share/Adobe/TypeSpt/myadobefntX.LST.bak",
              "/usr/local/share/Adobe/TypeSpt/.hidden/AdobeFnt.lst", "/usr/local/share/Adobe/TypeSpt/b/AdobeFnt.lst",
              "/usr/local/share/Adobe/TypeSpt/b/a/AdobeFnt.lst"});
    for (const PropertyList& element : array.elements()) {
        CHECK_EQ(element.size(), 2U);
        CHECK(element[kModificationDateKey].isDate());
    }
    CHECK(world.logged("[TS] Found Adobe Font List document: file://" + top + "AdobeFnt%FF.lst\n"));
    CHECK(world.logged("Could Not scan " + world.network + "TypeSpt/ due to error -43\n"));
}

TEST(SearchStatusIsThatOfTheLastFolder) {
    World world;
    const std::string top = world.local + "TypeSpt/";
    for (const char* name : {"a/AdobeFnt.lst", "b/AdobeFnt.lst", "AdobeFnt.lst"}) World::write(top + name, "x");
    const std::tuple<const char*, platform::OSStatus, std::size_t> cases[] = {
        {"a/", 0, 2}, {"b/", platform::kPermissionErr, 2}, {"", platform::kPermissionErr, 0}};
    for (const auto& [unreadable, status, found] : cases) {
        CONTEXT(unreadable);
        world.files.unreadable = {top + unreadable};
        std::vector<PropertyList> array;
        CHECK_EQ(SearchFolderForAdobeFontLists(world.files, world.log, top, array), status);
        CHECK_EQ(array.size(), found);
    }
    const auto kept = scanDomain_addingToArray(world.files, world.log, std::nullopt, std::nullopt);
    CHECK(!kept);
}

TEST(DatabaseComesFromTheLocalThenTheClassicDomain) {
    World world;
    World::write(world.user + "TypeSpt/FntNames.db", "version=9");
    CHECK_EQ(adobeDBVersion(world.files), 0.0F);
    World::write(world.classic + "TypeSpt/FntNames.db", "version=1");
    CHECK_EQ(adobeDBVersion(world.files), 1.0F);
    World::write(world.local + "TypeSpt/FntNames.db", "version=2");
    CHECK_EQ(adobeDBVersion(world.files), 2.0F);
    CHECK_EQ(adobeDBPath(world.files).value_or(""), world.local + "TypeSpt/FntNames.db");
}

TEST(CatalogueOfDatabaseAndLists) {
    World world;
    World::write(world.local + "TypeSpt/FntNames.db", "[A]\nf=from database\n[B]\nf=only here\n[C]\nf=last");
    World::write(world.user + "TypeSpt/AdobeFnt1.lst", listOf("A") + listOf("D"));
    World::write(world.local + "TypeSpt/AdobeFnt2.lst", listOf("D"));
    World::write(world.network + "TypeSpt/AdobeFnt0.lst", listOf("D"));
    World::write(world.local + "Fonts/D");
    std::vector<std::size_t> progress;
    world.context.progress = [&](std::size_t done, std::size_t all) { progress.insert(progress.end(), {done, all}); };
    adobeNames(world.context, world.catalogue);
    const PropertyList names = world.catalogue.names;
    CHECK_EQ(names.size(), 3U);
    CHECK_EQ(names["D"]["FontListFilePath"].stringValue(), world.network + "TypeSpt/AdobeFnt0.lst");
    CHECK_EQ(names["D"]["FontFilePath"].stringValue(), world.local + "Fonts/D");
    CHECK_EQ(progress, std::vector<std::size_t>{1, 3, 2, 3, 3, 3});

    World::write(world.local + "TypeSpt/FntNames.db", "[E]\nf=e\n[");
    adobeNames(world.context, world.catalogue);
    CHECK_EQ(world.catalogue.names, names);
}

TEST(FileSetsThatCountAsUnchanged) {
    const auto a = PropertyList::dictionary({{kPathKey, "a"}}), b = PropertyList::dictionary({{kPathKey, "b"}});
    const auto dated = PropertyList::dictionary({{kPathKey, "a"}, {kModificationDateKey, 1}});
    const auto array = [](std::vector<PropertyList> elements) { return PropertyList::array(std::move(elements)); };
    const std::tuple<PropertyList, PropertyList, std::size_t> cases[] = {
        {{}, array({a}), 0},                // nothing is stored
        {array({a}), array({a}), 0},        // equal lists count as changed
        {array({}), array({}), 0},          // empty ones, too
        {array({a}), array({a, b}), 0},     // of different length
        {array({a, b}), array({b, a}), 1},  // the first difference is logged
        {array({a}), array({dated}), 1},    // of another date
        {"text", array({a}), 0},            // not even a list
        {array({"a"}), array({a}), 1},      // not even dictionaries
    };
    for (const auto& [stored, current, lines] : cases) {
        CONTEXT(stored.description());
        fake::Log log;
        CHECK_EQ(isFileSetUnchanged(stored, current, log), false);
        CHECK_EQ(log.lines.size(), lines);
        if (lines) CHECK_EQ(log.lines[0], stored[0].description() + " does not equal " + current[0].description());
    }
}

TEST(CacheAcrossStarts) {
    World world;
    const std::string database = world.local + "TypeSpt/FntNames.db", list = world.local + "TypeSpt/AdobeFnt.lst";
    World::write(list, listOf("A"));
    const auto stored = [&](std::string_view key) { return world.cache->objectForKey(key); };

    for (int start = 0; start < 2; ++start) {
        const CacheCheck check = world.start();
        CHECK(check.isRebuilt && !check.isStored && world.logged("Rebuilding"));
        CHECK_EQ(world.firstOf("Scanning"), world.log.lines.size());
        CHECK(world.catalogue.state == Catalogue::State::Unavailable && !stored(kAllNamesKey));
    }
    World::write(database, "version=1");
    CHECK(world.start().isStored);
    CHECK(world.logged("Stored Version (0.000000) versus actual version (1.000000), 1"));
    CHECK(world.firstOf("Found") < world.firstOf("Stored Version"));
    CHECK_EQ(stored(kAllNamesKey)["A"]["FullName"].stringValue(), "A full");
    CHECK_EQ(stored(kVersionKey).realValue(), 1.0);
    CHECK_EQ(pathsIn(stored(kFilesKey), world.local), Lines{"TypeSpt/AdobeFnt.lst"});

    CHECK(world.start().isStored);  // with nothing changed
    CHECK(world.logged("Stored Version (1.000000) versus actual version (1.000000), 0") && world.logged("Rebuilding"));

    const PropertyList before = stored(kAllNamesKey);
    std::filesystem::remove(database);
    CHECK(!world.start().isStored);
    CHECK_EQ(stored(kAllNamesKey), before);

    World::write(database, "version=2");
    world.files.unreadable = {list};
    CHECK(world.start().isStored);
    CHECK(world.logged("Scanning " + list));
    CHECK_EQ(stored(kAllNamesKey).size(), 0U);
    CHECK(checkFontNameCache(world.context, nullptr, world.catalogue).isRebuilt);
}
