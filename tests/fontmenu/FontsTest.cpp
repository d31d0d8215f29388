// The system's fonts from fontconfig, and other programs' files with sets.
#include "linux/fonts/FontSetFiles.h"
#include "linux/fonts/LinuxFonts.h"
#include "tests/support/Check.h"

#include <algorithm>
#include <thread>

using namespace platform;

namespace {

std::string described(const std::vector<FontSet>& sets) {
    std::string text;
    for (const FontSet& set : sets) {
        text += (text.empty() ? "" : "; ") + set.name + (set.owner == SetOwner::KDE ? " of KDE:" : ":");
        for (const std::string& family : set.families) text += " (" + family + ")";
        if (!set.children.empty()) text += " {" + described(set.children) + "}";
    }
    return text;
}

std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i) all += text;
    return all;
}

// A bitmap font as text, which needs no tool to be made.
std::string bdf(const std::string& family, const std::string& weight, std::u32string_view characters) {
    std::string text =
        "STARTFONT 2.1\nFONT -t-f-" + weight +
        "-R-Normal--8-80-75-75-C-80-ISO10646-1\nSIZE 8 75 75\nFONTBOUNDINGBOX 8 1 0 0\nSTARTPROPERTIES 8\n"
        "FOUNDRY \"Maker\"\nFAMILY_NAME \"" +
        family + "\"\nWEIGHT_NAME \"" + weight +
        "\"\nSLANT \"R\"\nCHARSET_REGISTRY \"ISO10646\"\nCHARSET_ENCODING \"1\"\nFONT_ASCENT 8\n"
        "FONT_DESCENT 0\nENDPROPERTIES\nCHARS " +
        std::to_string(characters.size()) + "\n";
    std::u32string sorted(characters);
    std::ranges::sort(sorted);
    for (char32_t c : sorted)
        text += "STARTCHAR c" + std::to_string(c) + "\nENCODING " + std::to_string(c) +
                "\nSWIDTH 500 0\nDWIDTH 8 0\nBBX 8 1 0 0\nBITMAP\nFF\nENDCHAR\n";
    return text + "ENDFONT\n";
}

// A machine with these fonts alone.
struct FontFolder {
    check::TemporaryFolder folder;
    check::ScopedEnvironment configuration{"FONTCONFIG_FILE", (folder / "fonts.conf").c_str()};
    check::ScopedEnvironment home{"XDG_CONFIG_HOME", (folder / "config").c_str()};
    linux::LinuxFonts fonts;

    FontFolder() {
        check::writeFile(
            folder / "fonts.conf",
            "<fontconfig><dir>" + (folder / "a & b").replace(folder.path().size() + 3, 1, "&amp;") +
                "</dir><cachedir>" + folder / "cache" +
                "</cachedir><selectfont><rejectfont><pattern><patelt name=\"family\"><string>Hidden</string>"
                "</patelt></pattern></rejectfont></selectfont></fontconfig>");
        add("sub/none", "");
    }
    void add(const std::string& name, std::string_view bytes) { check::writeFile(folder / ("a & b/" + name), bytes); }
};

const FontFace* named(const std::vector<FontFace>& faces, std::string_view family) {
    auto found = std::ranges::find(faces, family, &FontFace::family);
    return found == faces.end() ? nullptr : &*found;
}

constexpr std::u32string_view kLatin = U"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

}  // namespace

TEST(SetsOfFontManagers) {
    auto cases = check::casesIn(TEST_DATA "/sets.txt");
    CHECK(cases.size() > 15);
    for (const check::Case& each : cases) {
        CONTEXT(each.label);
        CHECK_EQ(described(each.argument == "json" ? linux::fontManagerCollections(each.text)
                                                   : linux::kdeFontGroups(each.text)),
                 each.expected);
    }
}

TEST(HostileSetFilesHaveBounds) {
    std::string set = R"({"name": "s", "families": ["f", "g"]})";
    CHECK_EQ(linux::fontManagerCollections("[" + repeated(set + ",", 1500) + set + "]").size(), linux::kMostSets);
    std::string many = R"([{"name": "s", "families": [)" + repeated("\"f\",", 150'000) + "\"f\"]}]";
    CHECK_EQ(linux::fontManagerCollections(many)[0].families.size(), linux::kMostMembers);
    std::string open = R"([{"name": "s", "children": )";
    std::vector<FontSet> deep = linux::fontManagerCollections(repeated(open, 10'000) + "[]" + repeated("}]", 10'000));
    std::size_t depth = 0;
    for (const auto* sets = &deep; !sets->empty(); sets = &sets->front().children) ++depth;
    CHECK_EQ(depth, linux::kDeepestSets);
    CHECK_EQ(linux::fontManagerCollections(repeated("[", 500'000)).size(), std::size_t{0});

    std::string group = "<group name='g'><family>f</family></group>";
    CHECK_EQ(linux::kdeFontGroups("<groups>" + repeated(group, 1500) + "</groups>").size(), linux::kMostSets);
    std::string families = "<groups><group name='g'>" + repeated("<family>f</family>", 150'000) + "</group></groups>";
    CHECK_EQ(linux::kdeFontGroups(families)[0].families.size(), linux::kMostMembers);
    CHECK_EQ(linux::kdeFontGroups(repeated("<groups>", 100'000) + repeated("</groups>", 100'000)).size(),
             std::size_t{0});
}

TEST(SetsAreReadWhereTheyLie) {
    FontFolder machine;
    CHECK_EQ(described(machine.fonts.listSets()), std::string());
    check::writeFile(machine.folder / "config/font-manager/Collections.json", R"([{"name": "A", "families": ["a"]}])");
    check::writeFile(machine.folder / "config/fontgroups.xml",
                     "<groups><group name='B'><family>b</family></group></groups>");
    CHECK_EQ(described(machine.fonts.listSets()), std::string("A: (a); B of KDE: (b)"));
    check::writeFile(machine.folder / "config/font-manager/Collections.json",
                     R"([{"name": "A", "families": ["a"]}])" + repeated(" ", 1 << 20));
    CHECK_EQ(described(machine.fonts.listSets()), std::string("B of KDE: (b)"));
}

TEST(FontsAreListed) {
    FontFolder machine;
    machine.add("latin.bdf", bdf("Plain", "Bold", std::u32string(kLatin) + U"☺"));
    machine.add("sub/hebrew.bdf", bdf("Both Kinds", "Medium", std::u32string(kLatin) + U"אבגשת"));
    machine.add("half.bdf", bdf("Half", "Medium", U"AMZamאבגשתHlf"));
    machine.add("pictures.bdf", bdf("Pictures", "Medium", U"☺✏∑"));
    machine.add("nothing.bdf", bdf("Nothing", "Medium", U"ⵀ"));
    machine.add("hidden.bdf", bdf("Hidden", "Medium", kLatin));
    machine.add("hostile.bdf", bdf("Evil\x01 \xE2\x80\xAE"
                                   "Name\xFF",
                                   "Medium", kLatin));
    machine.add("broken.ttf", std::string("\0\1\0\0\0\x10", 6) + repeated("x", 300));
    machine.add("empty.ttf", "");
    std::vector<FontFace> faces;
    std::thread([&] { faces = machine.fonts.listFaces("de"); }).join();
    CHECK_EQ(faces.size(), std::size_t{7});

    struct Expected {
        std::string_view family;
        std::vector<WritingSystem> systems;
        bool isSymbolic, canWriteItsName, isActive;
    };
    const Expected expected[] = {
        {"Plain", {WritingSystem::Latin}, false, true, true},
        {"Both Kinds", {WritingSystem::Hebrew, WritingSystem::Latin}, false, true, true},
        {"Half", {WritingSystem::Hebrew}, false, true, true},
        {"Pictures", {}, true, false, true},
        {"Nothing", {}, false, false, true},
        {"Hidden", {WritingSystem::Latin}, false, true, false},
    };
    for (const Expected& each : expected) {
        CONTEXT(std::string(each.family));
        const FontFace* face = named(faces, each.family);
        REQUIRE(face);
        WritingSystems systems;
        for (WritingSystem system : each.systems) systems.set(static_cast<std::size_t>(system));
        CHECK_EQ(face->writingSystems.to_string(), systems.to_string());
        CHECK_EQ(face->isSymbolic, each.isSymbolic);
        CHECK_EQ(face->canWriteItsName, each.canWriteItsName);
        CHECK_EQ(face->isActive, each.isActive);
        CHECK(face->kind == FontKind::Bitmap);
        CHECK_EQ(face->foundry, std::string("Maker"));
        CHECK_EQ(face->listedFamily, each.family);
        CHECK_EQ(face->weight, each.family == "Plain" ? 700 : 400);
        CHECK_EQ(face->width, 100);
        CHECK_EQ(face->slant, 0);
        CHECK_EQ(face->postScriptName, std::string());
    }
    CHECK_EQ(named(faces, "Plain")->file, machine.folder / "a & b/latin.bdf");
    auto isHostile = [](const FontFace& face) { return face.file.ends_with("hostile.bdf"); };
    auto hostile = std::ranges::find_if(faces, isHostile);
    REQUIRE(hostile != faces.end());
    CHECK(propertylist::PropertyList(hostile->family) && hostile->family.find('\x01') == std::string::npos &&
          hostile->family.find("\xE2\x80\xAE") == std::string::npos);
}

TEST(NoFontsAreNoTrouble) {
    FontFolder machine;
    CHECK_EQ(machine.fonts.listFaces("").size(), std::size_t{0});
}
