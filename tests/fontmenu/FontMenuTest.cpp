// What options make of faces: the cases in menus.txt, and what holds whatever the faces.
#include "fontmenu/CatalogueNames.h"
#include "fontmenu/FontMenu.h"
#include "fontmenu/MenuText.h"
#include "fontmenu/NameOrder.h"
#include "settings/SettingsSchema.h"
#include "tests/support/Check.h"

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <set>

using namespace fontmenu;
using namespace platform;

namespace {

constexpr auto kIdentity = [](std::string_view text) { return std::string(text); };
const MenuWords& words() {
    static const MenuWords sWords = menuWords(kIdentity);
    return sWords;
}

std::vector<std::string> split(const std::string& text, std::string_view separator) {
    std::vector<std::string> parts;
    for (std::size_t at = 0, end = 0; end != text.npos; at = end + separator.size())
        parts.push_back(text.substr(at, (end = text.find(separator, at)) - at));
    return parts;
}

WritingSystems systemsNamed(const std::string& names) {
    WritingSystems systems;
    for (const std::string& name : split(names, "+"))
        systems.set(static_cast<std::size_t>(std::ranges::find(words().groups, name) - words().groups.begin()));
    return systems;
}

FontKind kindNamed(std::string_view name) {
    std::uint8_t kind = 0;
    while (kind < kFontKinds && nameOf(static_cast<FontKind>(kind)) != name) ++kind;
    return static_cast<FontKind>(kind);
}

// "family | style | PostScript name | property=value property"
FontFace faceIn(const std::string& line) {
    std::vector<std::string> parts = split(line, " | ");
    FontFace face;
    face.family = face.listedFamily = parts[0];
    face.style = parts.at(1);
    face.postScriptName = parts.at(2);
    face.file = "/fonts/" + face.postScriptName;
    static const std::map<std::string, std::function<void(FontFace&, const std::string&)>> kProperties{
        {"full", [](FontFace& f, const std::string& v) { f.fullName = v; }},
        {"listed", [](FontFace& f, const std::string& v) { f.listedFamily = v; }},
        {"file", [](FontFace& f, const std::string& v) { f.file = v; }},
        {"index", [](FontFace& f, const std::string& v) { f.index = static_cast<std::uint32_t>(std::stoul(v)); }},
        {"version",
         [](FontFace& f, const std::string& v) { f.version = static_cast<std::uint32_t>(std::stod(v) * 65536); }},
        {"foundry", [](FontFace& f, const std::string& v) { f.foundry = v; }},
        {"weight", [](FontFace& f, const std::string& v) { f.weight = std::stoi(v); }},
        {"width", [](FontFace& f, const std::string& v) { f.width = std::stoi(v); }},
        {"slant", [](FontFace& f, const std::string& v) { f.slant = std::stoi(v); }},
        {"kind", [](FontFace& f, const std::string& v) { f.kind = kindNamed(v); }},
        {"systems", [](FontFace& f, const std::string& v) { f.writingSystems = systemsNamed(v); }},
        {"symbolic", [](FontFace& f, const std::string&) { f.isSymbolic = true; }},
        {"unwritable", [](FontFace& f, const std::string&) { f.canWriteItsName = false; }},
        {"inactive", [](FontFace& f, const std::string&) { f.isActive = false; }},
    };
    for (const std::string& property : parts.size() > 3 ? split(parts[3], ", ") : std::vector<std::string>())
        kProperties.at(split(property, "=")[0])(face, split(property, "=").back());
    return face;
}

// "name | owner's number | family, family", two blanks further in for a child of the set above.
void addSet(std::vector<FontSet>& sets, const std::string& line) {
    if (line.starts_with("  ")) return addSet(sets.back().children, line.substr(2));
    std::vector<std::string> parts = split(line, " | ");
    sets.push_back({parts[0], static_cast<SetOwner>(std::stoi(parts.at(1))), split(parts.at(2), ", "), {}});
}

PropertyList settingsIn(const std::string& text) {
    MutableDictionary settings;
    for (const std::string& pair : split(text, " "))
        if (auto parts = split(pair, "="); parts.size() == 2) settings.set(parts[0], std::stoi(parts[1]));
    return std::move(settings).freeze();
}

std::string described(const Menu& menu) {
    return menuText(menu, kIdentity) + std::to_string(menu.faces) + " faces, " + std::to_string(menu.families) +
           " families, " + std::to_string(menu.lines()) + " lines" + (menu.arrangesFontPanel ? ", panel\n" : "\n");
}

struct Fonts {
    std::vector<FontFace> faces;
    std::vector<FontSet> sets;
};

template <typename Action>
void forEachItem(const std::vector<MenuItem>& items, Action action) {
    action(items);
    for (const MenuItem& item : items)
        if (!item.children.empty()) forEachItem(item.children, action);
}

}  // namespace

TEST(OptionsMakeMenusOfFaces) {
    std::map<std::string, Fonts> known;
    int tried = 0;
    std::vector<std::string> lines = check::linesIn(check::readFile(TEST_DATA "/menus.txt"));
    for (std::size_t i = 0; i < lines.size();) {
        std::vector<std::string> head = split(lines[i++], " | ");
        std::size_t first = i;
        while (i < lines.size() && !lines[i].starts_with("== ")) ++i;
        std::vector<std::string> body(lines.begin() + static_cast<std::ptrdiff_t>(first),
                                      lines.begin() + static_cast<std::ptrdiff_t>(i));
        std::erase(body, "");
        if (head[0] == "== faces") {
            known[head.at(1)];
            for (const std::string& line : body) known[head.at(1)].faces.push_back(faceIn(line));
        } else if (head[0] == "== sets") {
            for (const std::string& line : body) addSet(known[head.at(1)].sets, line);
        } else if (head[0].starts_with("== ")) {
            CONTEXT(head[0]);
            const Fonts& fonts = known.at(head.at(1));
            auto current = std::ranges::find(fonts.faces, head.size() > 3 ? head[3] : "none", &FontFace::file);
            std::optional<FaceNumber> place;
            if (current != fonts.faces.end()) place = static_cast<FaceNumber>(current - fonts.faces.begin());
            std::string expected;
            for (const std::string& line : body) expected += line + "\n";
            CHECK_EQ(described(menuOf(fonts.faces, fonts.sets, menuOptions(settingsIn(head.at(2))), place, words())),
                     expected);
            ++tried;
        }
    }
    CHECK(tried > 30);
}

TEST(AFamilyIsDrawnInItsPlainestFace) {
    struct Family {
        std::vector<std::string> faces;
        const char* plainest;
    };
    Family families[] = {
        {{"Italic | slant=100", "Light | weight=300", "Bold | weight=700", "Regular | width=100"}, "Regular"},
        {{"Italic | slant=100", "Bold | weight=700"}, "Bold"},
        {{"Wide | width=125", "Light | weight=300"}, "Light"},
        {{"Light | weight=250", "Black | weight=900", "Medium | weight=500"}, "Medium"},
        {{"Regular | inactive", "Bold Italic | weight=700, slant=100"}, "Bold Italic"},
    };
    for (const Family& family : families) {
        CONTEXT(family.plainest);
        std::vector<FontFace> faces;
        for (const std::string& face : family.faces) {
            std::vector<std::string> parts = split(face, " | ");
            faces.push_back(faceIn("F | " + parts[0] + " | F-" + parts[0] + " | " + parts[1]));
        }
        std::vector<FontSet> sets{{"All", SetOwner::KDE, {"F"}, {}}};
        MenuOptions options = menuOptions(settingsIn("Enabled=1 ShowSets=1 HierarchicalMenu=1"));
        Menu menu = menuOf(faces, sets, options, std::nullopt, words());
        CHECK_EQ(faces[menu.items[0].children[0].face].style, std::string(family.plainest));
    }
}

TEST(WhateverTheFacesTheMenuIsInOrder) {
    std::mt19937 random(20);
    auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    for (int round = 0; round < 400; ++round) {
        CONTEXT("round " + std::to_string(round));
        std::vector<FontFace> faces(static_cast<std::size_t>(below(40)));
        for (std::size_t i = 0; i < faces.size(); ++i) {
            FontFace& face = faces[i];
            face.family = face.listedFamily = "Family " + std::to_string(below(12));
            face.style = std::string(below(5) ? "Style " : "") + std::to_string(below(4));
            face.postScriptName = below(3) ? face.family + "-" + face.style : "";
            face.file = "/" + std::to_string(i / 2);
            face.index = i % 2;
            face.weight = 100 * (1 + below(3));
            face.kind = static_cast<FontKind>(below(kFontKinds));
            face.version = static_cast<std::uint32_t>(below(3));
            face.isActive = below(8) != 0;
            face.isSymbolic = below(9) == 0;
            face.writingSystems = WritingSystems(random());
            if (i && !below(6)) face = faces[i - 1];
        }
        std::vector<FontSet> sets(3);
        for (FontSet& set : sets) {
            set.name = "Set " + std::to_string(below(3));
            set.families = {"Family " + std::to_string(below(20)), "Family 1", "Family 1"};
        }
        MutableDictionary settings;
        for (const settings::Option& option : settings::options()) settings.set(option.key, below(3));
        settings.set("Enabled", below(9) != 0);
        MenuOptions options = menuOptions(std::move(settings).freeze());
        Menu menu = menuOf(faces, sets, options, 0, words());

        std::set<std::string> reached;  // by what copies have in common
        auto font = [](const FontFace& face) {
            return face.postScriptName.empty() ? face.family + "\n" + face.style : face.postScriptName;
        };
        forEachItem(menu.items, [&](const std::vector<MenuItem>& items) {
            std::set<FaceNumber> here;
            for (std::size_t i = 0; i < items.size(); ++i) {
                const MenuItem& item = items[i];
                CHECK_EQ(item.children.empty(), item.kind != ItemKind::Submenu);
                CHECK_EQ(item.title.empty(), item.kind == ItemKind::Separator);
                bool needsNext = item.kind == ItemKind::Separator || item.kind == ItemKind::Title;
                CHECK(!needsNext || (i + 1 < items.size() && items[i + 1].kind != item.kind));
                CHECK(item.kind != ItemKind::Separator || i > 0);
                if (item.kind != ItemKind::Face) continue;
                CHECK(here.insert(item.face).second);
                reached.insert(font(faces[item.face]));
            }
        });
        for (const FontFace& face : faces) CHECK(!face.isActive || reached.contains(font(face)));

        std::ranges::shuffle(faces, random);
        CHECK_EQ(menuText(menuOf(faces, sets, options, std::nullopt, words()), kIdentity),
                 menuText(menuOf(std::vector(faces.rbegin(), faces.rend()), sets, options, std::nullopt, words()),
                          kIdentity));
    }
}

TEST(NamesStandInTheOrderThatPeopleExpect) {
    const std::vector<std::string> expected{"",        "007 Sans",   "10 Sans",     "Ärger 00",     "Ärger 1", "Arial",
                                            "Arial 2", "arial 10",   "Arial 010 b", "Arial Narrow", "Éclair",  "Egon",
                                            "Ñandu",   "Univers 45", "Univers 055", "Univers 100",  "zebra"};
    std::vector<std::string> names(expected.rbegin(), expected.rend());
    std::ranges::stable_sort(names, {}, orderKey);
    CHECK_EQ(names, expected);
    CHECK_EQ(orderKey("Éa00"), orderKey("eA0"));
}

TEST(TheCatalogueNamesWhatItKnows) {
    PropertyList names = PropertyList::dictionary({
        {"Listed", PropertyList::dictionary({{"FullName", " Times"}, {"RealFullName", " Times Bold "}})},
        {"Styled",
         PropertyList::dictionary({{"FullName", "Times"}, {"RealFullName", "Times X"}, {"StyleName", "Fett"}})},
        {"Database", PropertyList::dictionary({{"FullName", "Caslon Pro Bold"}, {"StyleName", "Bold"}})},
        {"Other", PropertyList::dictionary({{"FullName", "Caslon"}, {"StyleName", "Caslon"}})},
        {"Empty", PropertyList::dictionary({{"FullName", " "}})},
        {"", PropertyList::dictionary({{"FullName", "nobody's"}})},
        {"Wrong", "no record"},
    });
    std::string shown;
    for (const char* name : {"Listed", "Styled", "Database", "Other", "Empty", "", "Wrong", "Unknown"}) {
        std::vector<FontFace> faces{faceIn("Family | Style | " + std::string(name) + " | full=Full")};
        takeCatalogueNames(faces, names);
        shown += faces[0].family + "|" + faces[0].style + "|" + faces[0].fullName + "|" + faces[0].listedFamily + "\n";
    }
    CHECK_EQ(shown,
             "Times|Bold|Times Bold|Family\n"
             "Times|Fett|Times X|Family\n"
             "Caslon Pro|Bold|Caslon Pro Bold|Family\n"
             "Family|Caslon|Caslon|Family\n"
             "Family|Style|Full|Family\n"
             "Family|Style|Full|Family\n"
             "Family|Style|Full|Family\n"
             "Family|Style|Full|Family\n");
}
