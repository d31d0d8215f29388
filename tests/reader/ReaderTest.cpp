// The library from within a program: files that go wrong, changes, threads, expressions and the catalogue.
#include "propertylist/Codec.h"
#include "reader/typeslate.h"
#include "tests/support/Check.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <thread>

using check::TemporaryFolder;
using propertylist::PropertyList;
namespace fs = std::filesystem;

namespace {

using Settings = std::unique_ptr<typeslate_settings, decltype(&typeslate_close)>;
using Entry = std::unique_ptr<typeslate_entry, decltype(&typeslate_entry_free)>;

constexpr const char* kFile = "com.tarnwick.typeslate.plist";
constexpr const char* kCatalogue = "com.tarnwick.typeslate.AdobeNames.plist";

Settings opened(const std::string& folder, int* status = nullptr) {
    return {typeslate_open_folder(folder.c_str(), status), typeslate_close};
}

Entry resolved(const Settings& settings, const char* identifier, const char* name = nullptr) {
    typeslate_application application = {.identifier = identifier, .creator = nullptr, .path = nullptr, .name = name};
    return {typeslate_resolve(settings.get(), &application), typeslate_entry_free};
}

PropertyList entry(const char* type, std::string_view data, int size) {
    return PropertyList::dictionary({{"Type", type},
                                     {"Data", data},
                                     {"Name", std::to_string(size)},
                                     {"Settings", PropertyList::dictionary({{"Enabled", true}, {"FontSize", size}})}});
}

PropertyList domain(std::vector<PropertyList> list) {
    return PropertyList::dictionary({{"TheExcList", PropertyList::array(std::move(list))}});
}

void write(const std::string& path, const std::string& bytes) {
    std::ofstream(path + ".new", std::ios::binary) << bytes;
    fs::rename(path + ".new", path);
}

void store(const std::string& path, const PropertyList& value) {
    write(path, encodePropertyList(value, propertylist::PropertyListFormat::Binary));
}

int sizeOf(const Settings& settings) {
    return typeslate_entry_option(resolved(settings, "x").get(), TYPESLATE_FONT_SIZE);
}

bool isToldWithin(int descriptor, int seconds) {
    pollfd wait{descriptor, POLLIN, 0};
    return ::poll(&wait, 1, seconds * 1000) == 1;
}

}  // namespace

TEST(EveryFaultIsAStatusAndLeavesWhatWasRead) {
    struct Case {
        int status, keptSize;  // what one that was open goes on with
        std::function<void(const std::string&)> happens;
    };
    const Case cases[] = {
        {TYPESLATE_ABSENT, 0, [](const std::string& path) { fs::remove(path); }},
        {TYPESLATE_DAMAGED, 7, [](const std::string& path) { write(path, "bplist00 no more"); }},
        {TYPESLATE_DAMAGED, 7, [](const std::string& path) { write(path, ""); }},
        {TYPESLATE_DAMAGED, 7, [](const std::string& path) { store(path, PropertyList::array({"no domain"})); }},
        {TYPESLATE_TOO_LARGE, 7,
         [](const std::string& path) {
             write(path, "");
             fs::resize_file(path, (16 << 20) + 1);
         }},
        {TYPESLATE_UNREADABLE, 7,
         [](const std::string& path) {
             fs::remove(path);
             fs::create_directory(path);
         }},
        {TYPESLATE_UNREADABLE, 7,
         [](const std::string& path) {
             fs::remove(path);
             CHECK_EQ(::mkfifo(path.c_str(), 0600), 0);
         }},
        {TYPESLATE_UNREADABLE, 7,
         [](const std::string& path) {
             fs::remove(path);
             fs::create_symlink(path, path);
         }},
    };
    for (const Case& c : cases) {
        TemporaryFolder folder;
        CONTEXT(typeslate_status_text(c.status));
        store(folder / kFile, domain({entry("Global", "", 7)}));
        int status = -1, changed = -1;
        Settings before = opened(folder.path(), &status);
        CHECK_EQ(status, +TYPESLATE_OK);
        c.happens(folder / kFile);
        CHECK_EQ(typeslate_refresh(before.get(), &changed), c.status);
        CHECK_EQ(changed, c.keptSize == 7 ? 0 : 1);
        CHECK_EQ(sizeOf(before), c.keptSize);
        CHECK_EQ(typeslate_refresh(before.get(), &changed), c.status);
        CHECK_EQ(changed, 0);
        Settings after = opened(folder.path(), &status);
        CHECK_EQ(status, c.status);
        CHECK_EQ(typeslate_entry_row(resolved(after, "x").get()), -1);
        fs::remove_all(folder / kFile);
        store(folder / kFile, domain({entry("Global", "", 8)}));
        CHECK_EQ(typeslate_refresh(before.get(), &changed), +TYPESLATE_OK);
        CHECK_EQ(changed, 1);
        CHECK_EQ(sizeOf(before), 8);
    }
}

TEST(WhoWaitsIsToldOfEachChange) {
    TemporaryFolder root;
    const std::string folder = root / "config/preferences", elsewhere = root / "elsewhere";
    Settings settings = opened(folder);
    const int events = typeslate_descriptor(settings.get());
    REQUIRE(events >= 0);
    CHECK_EQ(typeslate_descriptor(settings.get()), events);
    CHECK(!isToldWithin(events, 0));
    int size = 0;
    auto stored = [&](const std::string& path) { store(path, domain({entry("Global", "", ++size)})); };
    const std::function<void()> changes[] = {
        [&] {
            fs::create_directories(folder);
            stored(folder + "/" + kFile);
        },
        [&] { stored(folder + "/" + kFile); },
        [&] {
            fs::create_directory(elsewhere);
            stored(elsewhere + "/file");
            fs::remove(folder + "/" + kFile);
            fs::create_symlink(elsewhere + "/file", folder + "/" + kFile);
        },
        [&] { stored(elsewhere + "/file"); },
        [&] {
            fs::remove_all(root / "config");
            size = 0;
        },
        [&] {
            fs::create_directories(folder);
            size = 20;
            stored(folder + "/" + kFile);
        },
    };
    for (const auto& change : changes) {
        change();
        CONTEXT(std::to_string(size));
        for (int changed = 0; !changed;) {
            REQUIRE(isToldWithin(events, 30));
            typeslate_refresh(settings.get(), &changed);
        }
        // Several steps may have been met one by one.
        while (isToldWithin(events, 0)) typeslate_refresh(settings.get(), nullptr);
        CHECK_EQ(sizeOf(settings), size);
    }
}

// Each state of the file has the same number at two places of it.
TEST(EightThreadsNeverSeeHalfAState) {
    TemporaryFolder folder;
    auto stored = [&](int number) {
        store(folder / kFile,
              domain({entry("Global", "", 0), entry("Identifier", "a", number), entry("RegEx", "^b", number)}));
    };
    stored(1);
    Settings settings = opened(folder.path());
    std::atomic<int> halves = 0, seen = 0;
    std::atomic<bool> isOver = false;
    auto read = [&] {
        for (int last = 0; !isOver || last == 0;) {
            typeslate_refresh(settings.get(), nullptr);
            for (auto [identifier, name] : {std::pair("a", ""), std::pair("", "b")}) {
                Entry found = resolved(settings, identifier, name);
                int number = typeslate_entry_option(found.get(), TYPESLATE_FONT_SIZE);
                halves += std::to_string(number) != typeslate_entry_name(found.get()) || number < last;
                seen += number != last;
                last = number;
            }
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) threads.emplace_back(read);
    for (int number = 2; number <= 200; ++number) stored(number);
    while (seen < 16) std::this_thread::yield();
    isOver = true;
    for (std::thread& thread : threads) thread.join();
    CHECK_EQ(halves.load(), 0);
    typeslate_refresh(settings.get(), nullptr);
    CHECK_EQ(typeslate_entry_option(resolved(settings, "a").get(), TYPESLATE_FONT_SIZE), 200);
}

TEST(EntriesOutliveWhatTheyCameFrom) {
    TemporaryFolder folder;
    store(folder / kFile, domain({entry("Path", "/p", 1), entry("Global", "", 12)}));
    Settings settings = opened(folder.path());
    Entry global = resolved(settings, "a"), byPath{nullptr, typeslate_entry_free};
    typeslate_application application = {.identifier = nullptr, .creator = nullptr, .path = "/p", .name = nullptr};
    byPath.reset(typeslate_resolve(settings.get(), &application));
    Entry ofNothing{typeslate_resolve(settings.get(), nullptr), typeslate_entry_free};
    fs::remove(folder / kFile);
    typeslate_refresh(settings.get(), nullptr);
    settings.reset();
    CHECK_EQ(std::string(typeslate_entry_name(global.get())), "12");
    CHECK_EQ(std::string(typeslate_entry_data(byPath.get())), "/p");
    CHECK_EQ(typeslate_entry_reason(byPath.get()), +TYPESLATE_BY_PATH);
    CHECK_EQ(typeslate_entry_option(ofNothing.get(), TYPESLATE_FONT_SIZE), 12);
    CHECK_EQ(typeslate_entry_option(global.get(), static_cast<typeslate_option>(16)), 0);
    CHECK_EQ(typeslate_entry_option(global.get(), static_cast<typeslate_option>(-1)), 0);
}

TEST(SettingsAreFoundByTheEnvironment) {
    TemporaryFolder root;
    struct Case {
        const char *host, *own, *home;  // below the root; null: not set
        const char* place;
    };
    const Case cases[] = {
        {"host", "own", "home", "host/preferences"},
        {nullptr, "own", "home", "own/preferences"},
        {nullptr, nullptr, "home", "home/.config/preferences"},
    };
    for (const Case& c : cases) {
        CONTEXT(c.place);
        auto below = [&](const char* name) { return name ? root / name : std::string(); };
        const std::string host = below(c.host), own = below(c.own), home = below(c.home);
        check::ScopedEnvironment sandbox("HOST_XDG_CONFIG_HOME", c.host ? host.c_str() : nullptr),
            config("XDG_CONFIG_HOME", c.own ? own.c_str() : nullptr), user("HOME", home.c_str());
        fs::create_directories(root / c.place);
        store(root / c.place + "/" + kFile, domain({entry("Global", "", 5)}));
        CHECK_EQ(sizeOf({typeslate_open(nullptr), typeslate_close}), 5);
        fs::remove_all(root / c.place);
    }
    const fs::path before = fs::current_path();
    fs::current_path(root.path());
    fs::create_directory("here");
    store("here/" + std::string(kFile), domain({entry("Global", "", 6)}));
    Settings relative = opened("here");
    fs::current_path("here");
    store(kFile, domain({entry("Global", "", 7)}));
    typeslate_refresh(relative.get(), nullptr);
    CHECK_EQ(sizeOf(relative), 7);
    fs::current_path(before);
}

TEST(OptionsHaveTheNumbersThatProgramsAreBuiltWith) {
    const std::pair<typeslate_option, const char*> keys[] = {
        {TYPESLATE_ENABLED, "Enabled"},
        {TYPESLATE_CHECK_MENU_ITEMS, "CheckMenuItems"},
        {TYPESLATE_SHOW_FONT_IN_FACE, "ShowFontInFace"},
        {TYPESLATE_DUPE_HANDLING, "DupeHandling"},
        {TYPESLATE_SHOW_SETS, "ShowSets"},
        {TYPESLATE_CHANGE_SIZE, "ChangeSize"},
        {TYPESLATE_FONT_SIZE, "FontSize"},
        {TYPESLATE_SHOW_ICONS, "ShowIcons"},
        {TYPESLATE_HIERARCHICAL_MENU, "HierarchicalMenu"},
        {TYPESLATE_ALL_FONTS_GROUP, "AllFontsGroup"},
        {TYPESLATE_SCRIPT_SORT, "ScriptSort"},
        {TYPESLATE_INCLUDE_FAP_SETS, "IncludeFAPSets"},
        {TYPESLATE_INCLUDE_FEX_SETS, "IncludeFEXSets"},
        {TYPESLATE_INCLUDE_SUITCASE_SETS, "IncludeSuitcaseSets"},
        {TYPESLATE_GENERATE_INACTIVE_PREVIEW, "GenerateInactivePreview"},
        {TYPESLATE_MODIFY_FONT_PANEL, "ModifyFontPanel"},
    };
    CHECK_EQ(std::ssize(keys), +TYPESLATE_OPTION_COUNT);
    for (int number = 0; number < TYPESLATE_OPTION_COUNT; ++number) {
        CHECK_EQ(static_cast<int>(keys[number].first), number);
        CHECK_EQ(std::string(typeslate_option_key(keys[number].first)), keys[number].second);
    }
    CHECK(!typeslate_option_key(static_cast<typeslate_option>(16)));
}

TEST(ExpressionsSayWhatIsWrongWithThem) {
    struct Case {
        std::string text;
        std::size_t position;
        const char* reason;  // empty: it is one
    };
    const Case cases[] = {
        {"a", 0, ""},
        {"", 0, ""},
        {"(a", 2, "missing closing parenthesis"},
        {"ä(", 3, "missing closing parenthesis"},
        {"[z-a]", 3, "range out of order in character class"},
        {"\\C", 2, "using \\C is disabled by the application"},
        {"\xff", 0, "UTF-8 error: illegal byte (0xfe or 0xff)"},
        {std::string(10'000, 'a'), 0, ""},
        {std::string(10'001, 'a'), 0, "pattern string is longer than the limit set by the application"},
    };
    for (const Case& c : cases) {
        CONTEXT(c.text.substr(0, 10));
        typeslate_problem problem{};
        typeslate_expression* expression = typeslate_expression_new(c.text.data(), c.text.size(), &problem);
        CHECK_EQ(expression != nullptr, !*c.reason);
        CHECK_EQ(std::string(problem.reason), c.reason);
        CHECK_EQ(problem.position, c.position);
        typeslate_expression_free(expression);
    }
    struct Search {
        const char *text, *subject;
        int answer;
    };
    const Search searches[] = {
        {"b", "abc", 1},
        {"B", "abc", 0},
        {"", "", 1},
        {"^.$", "\xff", 0},
        {"b$",
         "\xff"
         "b",
         1},
        {"(a+)+$", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab", -1},
        {"(?R)|a", "b", -1},
    };
    for (const Search& search : searches) {
        CONTEXT(search.text);
        typeslate_expression* expression =
            typeslate_expression_new(search.text, std::string_view(search.text).size(), nullptr);
        std::string_view subject = search.subject;
        CHECK_EQ(typeslate_expression_matches(expression, subject.data(), subject.size()), search.answer);
        typeslate_expression_free(expression);
    }
}

// A list may hold any expressions; who asks for an application waits for a part of a second, and always the same
// entries count.
TEST(SearchesForOneApplicationEnd) {
    struct Case {
        std::size_t count;
        std::string expression;
        bool isLastReached;
    };
    const Case cases[] = {
        {99, "^(a+)+$", true},  // of 101,000 steps each
        {100, "^(a+)+$", false},
        {9'999, "x", true},
        {10'000, "x", false},
    };
    for (const Case& c : cases) {
        CONTEXT(std::to_string(c.count) + " of " + c.expression);
        TemporaryFolder folder;
        std::vector<PropertyList> list(c.count, entry("RegEx", c.expression, 1));
        list.push_back(entry("RegEx", "b$", 2));
        store(folder / kFile, domain(std::move(list)));
        Settings settings = opened(folder.path());
        int row = typeslate_entry_row(resolved(settings, "", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab").get());
        CHECK_EQ(row, c.isLastReached ? static_cast<int>(c.count) : -1);
    }
}

TEST(CompiledExpressionsTakeBoundedMemory) {
    const std::string large = "(?:[\\x{100}-\\x{1000}é]{1,50}){1,500}";
    TemporaryFolder folder;
    std::vector<PropertyList> list(2'000, entry("RegEx", large, 1));
    list.insert(list.begin(), entry("RegEx", "^b$", 2));
    list.push_back(entry("RegEx", "^c$", 3));
    store(folder / kFile, domain(std::move(list)));
    Settings settings = opened(folder.path());
    CHECK_EQ(typeslate_entry_row(resolved(settings, "", "b").get()), 0);
    CHECK_EQ(typeslate_entry_row(resolved(settings, "", "c").get()), -1);
}

TEST(FontsAreLookedUpInTheCatalogue) {
    TemporaryFolder folder;
    auto record = [](const char* name) {
        return PropertyList::dictionary({{"RealFullName", name}, {"FontFilePath", "/f"}, {"Number", 7}});
    };
    auto names = [&](const char* name) {
        return PropertyList::dictionary(
            {{"AllNames", PropertyList::dictionary({{"A-Bold", record(name)}, {"B", "b"}})}});
    };
    Settings settings = opened(folder.path());
    int status = -1, changed = -1;
    auto find = [&](const char* name) {
        return std::unique_ptr<typeslate_font, decltype(&typeslate_font_free)>(
            typeslate_font_find(settings.get(), name, &status), typeslate_font_free);
    };
    CHECK(!find("A-Bold"));
    CHECK_EQ(status, +TYPESLATE_ABSENT);
    store(folder / kCatalogue, names("A Bold"));
    typeslate_refresh(settings.get(), &changed);
    CHECK_EQ(changed, 1);
    auto font = find("A-Bold");
    CHECK_EQ(status, +TYPESLATE_OK);
    store(folder / kCatalogue, names("A Fat"));
    typeslate_refresh(settings.get(), &changed);
    CHECK_EQ(std::string(typeslate_font_text(font.get(), "RealFullName")), "A Bold");
    CHECK_EQ(std::string(typeslate_font_text(find("A-Bold").get(), "RealFullName")), "A Fat");
    CHECK(!typeslate_font_text(font.get(), "Number"));
    CHECK(!find("B"));
    CHECK(!find("C"));
    CHECK_EQ(status, +TYPESLATE_OK);
}

// Faces that can be chosen, and whether everything is as the header promises.
std::size_t facesIn(const typeslate_item* const* items, std::size_t count, bool& isSound) {
    std::size_t faces = 0;
    for (std::size_t at = 0; at < count; ++at) {
        const typeslate_item& item = *items[at];
        isSound &= (item.kind == TYPESLATE_ITEM_SUBMENU) == (item.item_count > 0);
        isSound &= (item.kind == TYPESLATE_ITEM_SEPARATOR) == !*item.title;
        isSound &= item.kind != TYPESLATE_ITEM_FACE || (*item.family && *item.file && item.weight > 0);
        faces += item.kind == TYPESLATE_ITEM_FACE ? 1 : facesIn(item.items, item.item_count, isSound);
    }
    return faces;
}

TEST(MenusAreMadeOfTheFontsThatAreHere) {
    TemporaryFolder folder;
    auto settingsOf = [](bool isOn, bool nests) {
        return PropertyList::dictionary(
            {{"Type", isOn ? "Global" : "Path"},
             {"Data", "/off"},
             {"Settings",
              PropertyList::dictionary({{"Enabled", isOn}, {"HierarchicalMenu", nests}, {"CheckMenuItems", true}})}});
    };
    store(folder / kFile, domain({settingsOf(true, true), settingsOf(false, true)}));
    Settings settings = opened(folder.path());
    int status = -1;
    CHECK(!typeslate_menu_new(settings.get(), nullptr, nullptr, nullptr, &status));
    CHECK_EQ(status, +TYPESLATE_BAD_ARGUMENT);
    auto menuOf = [&](const Entry& entry) {
        return std::unique_ptr<typeslate_menu, decltype(&typeslate_menu_free)>(
            typeslate_menu_new(settings.get(), entry.get(), "DejaVu Sans Bold", nullptr, &status), typeslate_menu_free);
    };
    auto menu = menuOf(resolved(settings, "x"));
    if (!menu) {  // built without the part that lists fonts
        CHECK_EQ(status, +TYPESLATE_ABSENT);
        return;
    }
    typeslate_application application = {.identifier = nullptr, .creator = nullptr, .path = "/off", .name = nullptr};
    auto plain = menuOf({typeslate_resolve(settings.get(), &application), typeslate_entry_free});
    settings.reset();
    bool isSound = true;
    CHECK(menu->is_arranged && !plain->is_arranged);
    CHECK_EQ(facesIn(menu->items, menu->item_count, isSound), menu->faces);
    CHECK_EQ(facesIn(plain->items, plain->item_count, isSound), plain->faces);
    CHECK(isSound && menu->lines < plain->lines && plain->faces == plain->item_count);
    std::string marked;
    for (std::size_t at = 0; at < menu->item_count; ++at)
        if (menu->items[at]->is_marked) marked += menu->items[at]->title;
    CHECK_EQ(marked, "DejaVu Sans");
    typeslate_menu_free(nullptr);
}

TEST(NothingIsTakenForNothing) {
    int status = -1;
    typeslate_close(nullptr);
    typeslate_entry_free(nullptr);
    typeslate_font_free(nullptr);
    typeslate_expression_free(nullptr);
    CHECK_EQ(typeslate_refresh(nullptr, nullptr), +TYPESLATE_BAD_ARGUMENT);
    CHECK_EQ(typeslate_descriptor(nullptr), -1);
    CHECK(!typeslate_is_on(nullptr) && !typeslate_resolve(nullptr, nullptr) &&
          !typeslate_font_find(nullptr, "", &status));
    CHECK_EQ(status, +TYPESLATE_BAD_ARGUMENT);
    CHECK(!typeslate_entry_applies(nullptr) && !typeslate_entry_option(nullptr, TYPESLATE_ENABLED));
    CHECK(!typeslate_entry_name(nullptr) && !typeslate_entry_data(nullptr) && !typeslate_font_text(nullptr, "a"));
    CHECK_EQ(typeslate_entry_row(nullptr), -1);
    CHECK_EQ(typeslate_expression_matches(nullptr, "", 0), 0);
    CHECK(typeslate_status_text(99) == typeslate_status_text(TYPESLATE_BAD_ARGUMENT));
    CHECK_EQ(std::string(typeslate_version()), "1.0.0");
    typeslate_expression* empty = typeslate_expression_new(nullptr, 5, nullptr);
    CHECK_EQ(typeslate_expression_matches(empty, "a", 1), 1);
    typeslate_expression_free(empty);
    Settings settings = opened("/nowhere", &status);
    CHECK_EQ(status, +TYPESLATE_ABSENT);
    CHECK(typeslate_is_on(settings.get()));
}
