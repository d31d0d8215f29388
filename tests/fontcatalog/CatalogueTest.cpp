#include "pane/fontcatalog/AdobeNames.h"
#include "pane/fontcatalog/FontListSearch.h"
#include "settings/DiagnosticLog.h"
#include "tests/fontcatalog/Files.h"
#include "tests/support/FakePlatform.h"

using namespace fontcatalog;
using fontcatalogtest::Files;
using fontcatalogtest::Machine;
using platform::PropertyList;

namespace {

std::string listOf(const std::string& name) {
    return "%!list\n%BeginFont\nFontName:" + name + "\nFullName:" + name + " full\nOutlineFileName:" + name +
           "\n%EndFont\n";
}

std::string pathsIn(const PropertyList& array, const std::string& prefix) {
    std::string paths;
    for (const PropertyList& each : array.elements())
        paths.append(each[kPathKey].stringValue().substr(prefix.size())).append(" ");
    return paths;
}

struct World : Machine {
    Files files;
    fake::Log log;
    fake::Journal journal;
    fake::Preferences preferences{journal};
    std::unique_ptr<CFPreferencesWrapper_Typeslate> cache =
        CFPreferencesWrapper_Typeslate::preferencesWithApplication(preferences, kCacheDomain);
    std::unique_ptr<CFPreferencesWrapper_Typeslate> settings =
        CFPreferencesWrapper_Typeslate::preferencesWithApplication(preferences, settings::kSettingsDomain);
    settings::DiagnosticLog diagnostics{log, settings.get()};
    Catalogue catalogue;
    std::string passedOver;
    Context context{files, log, diagnostics, {}, [this](std::string_view path, platform::OSStatus reason) {
                        passedOver.append(path.substr(path.rfind('/') + 1)).append(std::to_string(reason) + " ");
                    }};
    World() { settings->setBool_forKey(true, settings::kLogStuffKey); }

    // As a new process would.
    CacheCheck start() {
        log.lines.clear();
        catalogue = {};
        return checkFontNameCache(context, cache.get(), catalogue);
    }
    std::size_t firstOf(std::string_view part) const {
        const auto has = [&](const std::string& line) { return line.find(part) != std::string::npos; };
        return static_cast<std::size_t>(std::find_if(log.lines.begin(), log.lines.end(), has) - log.lines.begin());
    }
    bool logged(std::string_view part) const { return firstOf(part) < log.lines.size(); }
};

}  // namespace

TEST(SearchFindsListsInOrder) {
    World world;
    const auto cases = check::casesIn(TEST_DATA "/search.txt");
    REQUIRE(cases.size() == 1);
    Machine::fill(world.temporary.path() + "/", cases[0].text);
    const PropertyList array = getAdobeFilesArray(world.context);
    CHECK_EQ(pathsIn(array, world.temporary.path()), cases[0].expected);
    for (const PropertyList& element : array.elements())
        CHECK(element.size() == 2 && element[kModificationDateKey].isDate());
    CHECK(world.logged("[TS] Found Adobe Font List document: file://" + world.local + "TypeSpt/AdobeFnt%FF.lst\n"));
    CHECK(world.logged("Passing over " + world.local + "TypeSpt/f: A link to another file system"));
    CHECK_EQ(world.passedOver, "AdobeFnt\xFF.lst-37 f-1303 ");
    CHECK(world.logged("Could Not scan " + world.network + "TypeSpt/ due to error -43\n"));
}

TEST(SearchStatusIsThatOfTheLastFolder) {
    World world;
    Machine::fill(world.local, "a/AdobeFnt.lst\nb/AdobeFnt.lst\nAdobeFnt.lst");
    const std::tuple<const char*, platform::OSStatus, std::size_t> cases[] = {
        {"a/", 0, 2}, {"b/", platform::kPermissionErr, 2}, {"", platform::kPermissionErr, 0}};
    for (const auto& [unreadable, status, found] : cases) {
        CONTEXT(unreadable);
        world.files.unreadable = {world.local + unreadable};
        std::vector<PropertyList> array;
        CHECK_EQ(SearchFolderForAdobeFontLists(world.context, world.local, array), status);
        CHECK_EQ(array.size(), found);
    }
    CHECK(!scanDomain_addingToArray(world.context, std::nullopt, std::nullopt));
}

TEST(DatabaseComesFromTheLocalThenTheClassicDomain) {
    World world;
    const std::tuple<std::string, const char*, float> steps[] = {
        {world.user, "version=9", 0}, {world.classic, "version=1", 1}, {world.local, "version=2", 2}};
    for (const auto& [domain, text, version] : steps) {
        World::write(domain + "TypeSpt/FntNames.db", text);
        CHECK_EQ(adobeDBVersion(world.context), version);
    }
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

TEST(CacheAcrossStarts) {
    World world;
    const std::string database = world.local + "TypeSpt/FntNames.db", list = world.local + "TypeSpt/AdobeFnt.lst";
    World::write(list, listOf("A"));
    const auto stored = [&](std::string_view key) { return world.cache->objectForKey(key); };

    for (int start = 0; start < 2; ++start) {
        const CacheCheck check = world.start();
        CHECK(check.isRebuilt && !check.isStored && world.logged("Rebuilding"));
        CHECK(!world.logged("Scanning"));
        CHECK(world.catalogue.state == Catalogue::State::Unavailable && !stored(kAllNamesKey));
    }
    World::write(database, "version=1");
    CHECK(world.start().isStored);
    CHECK(world.logged("Stored Version (0.000000) versus actual version (1.000000), 1"));
    CHECK(world.firstOf("Found") < world.firstOf("Stored Version"));
    CHECK_EQ(stored(kAllNamesKey)["A"]["FullName"].stringValue(), "A full");
    CHECK_EQ(stored(kVersionKey).realValue(), 1.0);
    CHECK_EQ(pathsIn(stored(kFilesKey), world.local), "TypeSpt/AdobeFnt.lst ");

    world.files.listings = 0;
    CHECK(world.start().isStored);  // with nothing changed
    const int searched = world.files.listings;
    CHECK(world.logged("Stored Version (1.000000) versus actual version (1.000000), 0") && world.logged("Rebuilding"));

    world.settings->setBool_forKey(false, settings::kLogStuffKey);
    CHECK(world.start().isStored && world.log.lines == std::vector<std::string>{"Rebuilding"});
    CHECK_EQ(world.files.listings, searched + searched / 2);  // without the second search, whose lines nobody reads
    world.settings->setBool_forKey(true, settings::kLogStuffKey);

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

TEST(LargeTextsArePassedOver) {
    World world;
    World::write(world.local + "TypeSpt/FntNames.db", "version=1\n");
    std::filesystem::resize_file(world.local + "TypeSpt/FntNames.db", kLargestText + 1);
    for (const auto& [name, size] : std::map<std::string, std::size_t>{
             {"1", kLargestText}, {"2", kLargestText + 1}, {"3", kMostListText - kLargestText}, {"4", 1000}}) {
        const std::string path = world.local + "TypeSpt/AdobeFnt.lst" + name;
        World::write(path, listOf(name));
        std::filesystem::resize_file(path, size);
    }
    CHECK(world.start().isStored);
    CHECK(world.catalogue.names.size() == 2 && world.catalogue.names["1"] && world.catalogue.names["3"]);
    CHECK_EQ(world.passedOver, "FntNames.db-1309 FntNames.db-1309 AdobeFnt.lst2-1309 AdobeFnt.lst4-1309 ");
    CHECK_EQ(pathsIn(world.cache->objectForKey(kFilesKey), world.local + "TypeSpt/AdobeFnt.lst"), "1 2 3 4 ");
}
