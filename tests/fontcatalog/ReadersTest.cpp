#include "fuzz/Reference.h"
#include "pane/fontcatalog/EscapedName.h"
#include "pane/fontcatalog/FontListReader.h"
#include "pane/fontcatalog/NameDatabaseReader.h"
#include "platform/Unicode.h"
#include "tests/support/Check.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <fstream>

using namespace fontcatalog;
using platform::PropertyList;

namespace {

using Lines = std::vector<std::string>;

Text textOf(std::string_view bytes) { return decodedText(std::make_shared<const std::string>(bytes)); }

struct Reading {
    PropertyList names;
    Lines log, lookedUp;
};

Reading readList(std::string_view bytes, NamesCollection names = {}) {
    Reading reading;
    reference::RecordingLog log;
    const FontFileFinder find = [&](std::string_view path) -> std::optional<std::string> {
        reading.lookedUp.emplace_back(path);
        if (path == "gone") return std::nullopt;
        return "/F/" + std::string(path);
    };
    FontListReader(listText(std::make_shared<const std::string>(bytes)), "/L", find, log).readInto(names);
    reading.names = std::move(names).freeze();
    reading.log = log.lines;
    return reading;
}

// "name: key=value, key=value; name: ..."
std::string shortForm(const PropertyList& names) {
    std::string text;
    for (const auto& [name, record] : names.entries()) {
        text.append(text.empty() ? "" : "; ").append(name.stringValue()).append(":");
        for (const auto& [key, value] : record.entries())
            text.append(" ").append(key.stringValue()).append("=").append(value.stringValue()).append(",");
    }
    return text;
}

PropertyList databaseOf(std::string_view bytes) {
    NamesCollection names;
    readNameDatabase(textOf(bytes), names);
    return std::move(names).freeze();
}

}  // namespace

TEST(FontListRecords) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"family name takes the full name's place",
         "x\n%BeginFont\nFontName:A\nFullName:T Bold\nFamilyName:T\n%EndFont",
         "A: FontName=A, FullName=T, FamilyName=T, RealFullName=T Bold,"},
        {"line ends of all three kinds, blank lines, white space around lines",
         "x\r%BeginFont\r\n\r\n \tFontName:A \r\r\xC2\xA0 FullName:B\xE3\x80\x80\n%EndFont",
         "A: FontName=A, FullName=B,"},
        {"values keep what follows the colon", "x%BeginFont\nFontName: A\nFullName:b:c:\n%EndFont",
         " A: FontName= A, FullName=b:c:,"},
        {"keys are taken as they are", "x%BeginFont\nFontName:A\nFullName:B\nfullname:c\nFull Name :d\n:e\n%EndFont",
         "A: FontName=A, FullName=B, fullname=c, Full Name =d, =e,"},
        {"empty values and lines without a colon", "x%BeginFont\nFontName:A\nFullName:B\nFullName:\nX:\nY\n%EndFont",
         "A: FontName=A, FullName=B,"},
        {"a key's last value", "x%BeginFont\nFontName:A\nFullName:B\nK:1\nK:2\n%EndFont",
         "A: FontName=A, FullName=B, K=2,"},
        {"records without a name or a full name",
         "x%BeginFont\nFullName:B\n%EndFont%BeginFont\nFontName:A\nFamilyName:B\n"
         "%EndFont%BeginFont%EndFont",
         ""},
        {"a record at the very start, one not closed",
         "%BeginFont\nFontName:A\nFullName:B\n%EndFont %BeginFont\nFontName:C\n"
         "FullName:D",
         "A: FontName=A, FullName=B,; C: FontName=C, FullName=D,"},
        {"a start within a record is no start", "%BeginFont\nFontName:A\n%BeginFont\nFullName:B\n%EndFont",
         "A: FontName=A, FullName=B,"},
        {"an end before any start", "%EndFont\nFontName:A\nFullName:B\n%BeginFont", ""},
        {"outline file found", "%BeginFont\nFontName:A\nFullName:B\nOutlineFileName:S\\T\\X.pfb\n%EndFont",
         "A: FontName=A, FullName=B, OutlineFileName=S\\T\\X.pfb, FontListFilePath=/L, FontFilePath=/F/S/T/X.pfb,"},
        {"outline file missing", "%BeginFont\nFontName:A\nFullName:B\nOutlineFileName:gone\nFontFilePath:x\n%EndFont",
         "A: FontName=A, FullName=B, OutlineFileName=gone, FontFilePath=x, FontListFilePath=/L,"},
    };
    for (const auto& [label, list, names] : cases) {
        CONTEXT(label);
        CHECK_EQ(shortForm(readList(list).names), names);
    }
}

TEST(FontListLog) {
    NamesCollection names;
    names.set("A", PropertyList::dictionary({{"StyleName", "S"}}));
    const auto record = [](std::string fullName) {
        return "%BeginFont\nFontName:A\nFullName:" + fullName + "\n%EndFont\n";
    };
    const Reading reading =
        readList(record("One") + record("Two") + record("Two") + record("ITC New Baskerville"), std::move(names));
    const auto printed = [](const char* fullName) {
        return PropertyList::dictionary({{"FontName", "A"}, {"FullName", fullName}}).description();
    };
    const std::string style = PropertyList::dictionary({{"StyleName", "S"}}).description();
    CHECK_EQ(
        reading.log,
        Lines{"Multiple entries for font A. Old one is (null). New one is One", style + " vs " + printed("One"),
              "Multiple entries for font A. Old one is One. New one is Two", printed("One") + " vs " + printed("Two"),
              "What", "Multiple entries for font A. Old one is Two. New one is ITC New Baskerville",
              printed("Two") + " vs " + printed("ITC New Baskerville")});
    CHECK_EQ(reading.names["A"]["FullName"].stringValue(), "ITC New Baskerville");
}

// Sizes at which anything but one pass over the text would not come to an end.
TEST(FontListsBuiltToHurt) {
    const auto repeated = [](std::string_view part, std::size_t count) {
        std::string text;
        text.reserve(part.size() * count);
        while (count-- > 0) text += part;
        return text;
    };
    std::string distinct;
    for (int i = 0; i < 300'000; ++i) distinct += "Key" + std::to_string(i) + ":v\n";
    const struct {
        const char* label;
        std::string list;
        std::size_t names, fields;
    } cases[] = {
        {"empty records", repeated("%BeginFont\n%EndFont\n", 1'000'000), 0, 0},
        {"starts only", repeated("%BeginFont", 3'000'000), 0, 0},
        {"ends only", repeated("%EndFont", 3'000'000), 0, 0},
        {"a record that is not closed", "%BeginFont\nFontName:A\nFullName:B\n" + repeated("K:value\n", 3'000'000), 1,
         3},
        {"one long line", "%BeginFont\nFontName:A\nFullName:B\n" + repeated(": \r", 5'000'000), 1, 2},
        {"as many keys as lines", "%BeginFont\nFontName:A\nFullName:B\n" + distinct, 1, 300'002},
    };
    for (const auto& c : cases) {
        CONTEXT(c.label);
        const PropertyList names = readList(c.list).names;
        CHECK_EQ(names.size(), c.names);
        CHECK_EQ(names["A"].size(), c.fields);
    }
}

// More different sequences of keys than the reader keeps, and again the usual ones.
TEST(ListsWithTooManyKeys) {
    std::string list;
    for (int i = 0; i < 700; ++i) {
        const std::string number = std::to_string(i);
        list +=
            "%BeginFont\nFontName:" + number + "\nFullName:F" + number + "\nKey" + std::to_string(i * 7 % 400) + ":a\n";
        if (i % 3) list += "Cl\x8E" + number + ":b\x8E\nFamilyName:" + number + "\nKey:1\nKey:2\n";
        if (i % 5) list += "OutlineFileName:X\\" + number + "\n" + std::string(300, 'k') + ":c\n";
        list += "FontName:" + std::to_string(i % 600) + "\n%EndFont\n";
    }
    const FontFileFinder find = [](std::string_view path) { return "/F/" + std::string(path); };
    reference::RecordingLog log;
    NamesCollection expected;
    reference::readFontList(textOf(list).characters, "/L", find, expected, log);
    const Reading reading = readList(list);
    CHECK_EQ(shortForm(reading.names), shortForm(std::move(expected).freeze()));
    CHECK_EQ(reading.log, log.lines);
}

// The growth of a child's memory while it reads, as a multiple of the list.
double memoryToRead(const std::string& list) {
    const auto peak = [] {
        std::ifstream status("/proc/self/status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with("VmHWM:")) return std::atof(line.c_str() + 6) * 1024;
        return 0.0;
    };
    int ends[2];
    REQUIRE(pipe(ends) == 0);
    const pid_t child = fork();
    if (child == 0) {
        const double before = peak();
        const PropertyList names = readList(list).names;
        const double grown = names ? peak() - before : 0;
        _exit(write(ends[1], &grown, sizeof grown) == sizeof grown ? 0 : 1);
    }
    double grown = 0;
    close(ends[1]);
    CHECK(child > 0 && read(ends[0], &grown, sizeof grown) == sizeof grown && waitpid(child, nullptr, 0) == child);
    close(ends[0]);
    return grown / static_cast<double>(list.size());
}

TEST(MemoryIsASmallMultipleOfTheList) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return;  // which have memory of their own for every byte
#endif
    std::string keys = "%BeginFont\nFontName:A\nFullName:B\n", values = keys, records;
    for (int i = 0; i < 500'000; ++i) {
        const std::string four = {static_cast<char>('a' + i % 26), static_cast<char>('a' + i / 26 % 26),
                                  static_cast<char>('a' + i / 676 % 26), static_cast<char>('A' + i / 17576)};
        keys += four + ":x\n";
        values += four + ":\x8E" + four + "\n";
        if (i < 100'000) records += "%BeginFont\nFontName:" + four + "\nFullName:B\n" + four + ":1\n%EndFont\n";
    }
    for (const std::string* list : {&keys, &values, &records}) CHECK(memoryToRead(*list) < 12);
    CHECK(memoryToRead(keys) > 1);  // or else nothing was measured
}

TEST(RecordsOutliveTheirList) {
    PropertyList names;
    {
        auto bytes = std::make_shared<const std::string>("%BeginFont\nFontName:Alone\nFullName:Still here\n%EndFont");
        reference::RecordingLog log;
        NamesCollection collection;
        FontListReader(listText(std::move(bytes)), "/L", {}, log).readInto(collection);
        names = std::move(collection).freeze()["Alone"];
    }
    CHECK_EQ(names["FullName"].stringValue(), "Still here");
}

TEST(NameDatabaseSections) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"the last section is never stored", "[Foo]\nf=Foo", ""},
        {"the next header stores it", "[Foo]\nf=Foo\n[Bar]\n", "Foo: FullName=Foo,"},
        {"lines before the first header", "f=x\ns=y\n[A]\n[B]", ""},
        {"sections without values", "[A]\nversion=1\n[B]\n;f=x\n[C]\nF=x\n[D]", ""},
        {"a section without a name", "[]\nf=x\n[A]\ns=y\n[B]", "A: StyleName=y,"},
        {"headers: the first ] goes, whatever follows stays", "[A]b]\nf=1\n[[C]\nf=2\n[no end\nf=3\n[]D\nf=4\n[",
         "Ab]: FullName=1,; [C: FullName=2,; no end: FullName=3,; D: FullName=4,"},
        {"f=1, always replaces, f= only fills", "[A]\nf=u\nf=v\n[B]\nf=u\nf=1,v\nf=1,w\nf=x\n[C]",
         "A: FullName=u,; B: FullName=w,"},
        {"s=, always replaces, s= only fills", "[A]\ns=u\ns=v\n[B]\ns=u\ns=,v\ns=,w\ns=x\n[C]",
         "A: StyleName=u,; B: StyleName=w,"},
        {"codes of one byte and of four digits", "[A]\nf=1,\\8E\\8E00\ns=\\00E9\\8E\n[B]",
         "A: FullName=éé00, StyleName=é\u008E,"},
        {"an empty name is a name", "[A]\nf=\nf=x\n[B]", "A: FullName=,"},
        {"a section again replaces the first", "[A]\nf=x\ns=y\n[A]\nf=z\n[B]", "A: FullName=z,"},
        {"white space around lines", " [A] \r\n\tf= x \r;\r[B]", "A: FullName= x,"},
    };
    for (const auto& [label, database, names] : cases) {
        CONTEXT(label);
        CHECK_EQ(shortForm(databaseOf(database)), names);
    }
}

TEST(NameDatabaseVersions) {
    const std::pair<const char*, float> cases[] = {
        {"version=2.5", 2.5F},      {"version=abc", 0},         {"", 0},
        {"Version=2", 0},           {"x\nmyversion= \n 3x", 3}, {"version=-1.5e1", -15},
        {"version=+.5", .5F},       {"version=7.", 7},          {"version=x version=2", 0},
        {"version=1e99", INFINITY}, {"version=1e-99", 0},       {"version=inf", 0},
        {"version=--1", 0},         {"version=.", 0},           {"version=", 0},
        {"version=0x10", 0},        {"version=1e", 1},          {"version=-1e999", -INFINITY},
    };
    for (const auto& [text, version] : cases) {
        CONTEXT(text);
        CHECK_EQ(nameDatabaseVersion(text), version);
    }
}

TEST(EscapedNames) {
    const std::tuple<const char*, const char*, bool, const char*> cases[] = {
        {"no code", "Café", true, "Café"},
        {"four digits", "Caf\\00E9", true, "Café"},
        {"two digits, Mac OS Roman", "Caf\\8E \\f0", false, "Café \uF8FF"},
        {"no hex digit", "\\zz12", true, "\\zz12"},
        {"the same code twice", "\\00e9\\00e9\\00E9", true, "ééé"},
        {"fewer digits than the span, which goes whole", "\\41zz!", true, "A!"},
        {"white space and 0x before the digits", "\\ 41!\\0x41\\\t\t\tA", true, "AA\n"},
        {"0x alone is no number", "\\0x!\\0xzz", false, "\\0x!\\0xzz"},
        {"a span cut short by the end", "a\\4", false, "a\u0004"},
        {"a backslash at the very end", "a\\41\\", false, "aA\\"},
        {"a short span replaces the beginnings of longer ones", "\\0xzz\\0", true, nullptr},
        {"a surrogate pair in two codes", "\\D835\\DD3D", true, "\U0001D53D"},
        {"lone surrogates", "\\DD3D\\D835x\\D835", true, "\uFFFD\uFFFDx\uFFFD"},
        {"characters beyond the BMP count as two", "\\\U0001D53D41", true, "\\\U0001D53D41"},
        {"a code that makes a backslash makes codes", "\\005C00E9\\00E9", true, "éé"},
        {"made after its turn, it stays", "\\005C00E9", true, "\\00E9"},
        {"a span with a backslash takes it along", "\\4\\41", false, "\00441"},
    };
    for (const auto& [label, text, isUnicode, expected] : cases) {
        CONTEXT(label);
        const std::string name = escapedNameForString_isUnicode(text, isUnicode);
        CHECK_EQ(name, reference::escapedName(text, isUnicode));
        if (expected) CHECK_EQ(name, expected);
    }
}

TEST(LongEscapedNames) {
    std::string codes, broken;
    for (int i = 0; i < 60'000; ++i) {
        const std::string digits = platform::formatted("%04X", {i});
        codes += "\\" + digits;
        broken += "\\005C" + digits + "\\" + digits + "\\\\";
    }
    CHECK(platform::isValidUTF8(escapedNameForString_isUnicode(codes, true)));
    CHECK(platform::isValidUTF8(escapedNameForString_isUnicode(broken, true)));
    CHECK(platform::isValidUTF8(escapedNameForString_isUnicode(broken, false)));
    const std::string_view part = std::string_view(broken).substr(0, 3000);
    CHECK_EQ(escapedNameForString_isUnicode(part, true), reference::escapedName(part, true));
}

TEST(Encodings) {
    using namespace std::string_literals;
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"nothing", "", ""},
        {"UTF-8", "Caf\xC3\xA9", "Café"},
        {"UTF-8 with a mark", "\357\273\277Caf\303\251", "Café"},
        {"broken UTF-8 with a mark", "\357\273\277a\303z\355\240\200", "a\uFFFDz\uFFFD\uFFFD\uFFFD"},
        {"Mac OS Roman", "Caf\x8E\xCA\xDB", "Café\u00A0€"},
        {"overlong UTF-8 is Mac OS Roman", "\xC0\x80", "¿Ä"},
        {"UTF-16, low byte first", "\377\376a\0\x3D\xD8\x00\xDE"s, "a\U0001F600"},
        {"UTF-16, high byte first", "\376\377\0a\xD8\x3D\xDE\x00"s, "a\U0001F600"},
        {"UTF-16, lone surrogates and half a unit", "\xFE\xFF\xDE\x00\xD8\x3D\0a\0"s, "\uFFFD\uFFFDa\uFFFD"},
    };
    for (const auto& [label, bytes, expected] : cases) {
        CONTEXT(label);
        const Text text = textOf(bytes);
        CHECK_EQ(text.characters, expected);
        CHECK_EQ(text.owner->data() <= text.characters.data(), true);
    }
    const auto plain = std::make_shared<const std::string>("plain");
    CHECK_EQ(decodedText(plain).owner == plain, true);
    CHECK_EQ(decodedText(nullptr).characters, "");
}
