#include "fuzz/Reference.h"
#include "pane/fontcatalog/EscapedName.h"
#include "pane/fontcatalog/FontListReader.h"
#include "pane/fontcatalog/NameDatabaseReader.h"
#include "propertylist/Unicode.h"
#include "tests/support/Check.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <map>

using namespace fontcatalog;
using platform::PropertyList;

namespace {

using Lines = std::vector<std::string>;

FileText textOf(std::string_view bytes) { return decodedText(std::make_shared<const std::string>(bytes)); }

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
    readFontList(listText(std::make_shared<const std::string>(bytes)), "/L", find, log, names);
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

TEST(TextsAndWhatTheReadersMakeOfThem) {
    const std::map<std::string, std::function<std::string(const std::string&)>> readers = {
        {"font list", [](auto& text) { return shortForm(readList(text).names); }},
        {"name database", [](auto& text) { return shortForm(databaseOf(text)); }},
        {"encoding", [](auto& text) { return std::string(textOf(text).characters); }},
        {"version", [](auto& text) { return platform::formatted("%g", {nameDatabaseVersion(text)}); }},
        {"Unicode codes", [](auto& text) { return escapedNameForString_isUnicode(text, true); }},
        {"Mac OS Roman codes", [](auto& text) { return escapedNameForString_isUnicode(text, false); }},
    };
    const auto cases = check::casesIn(TEST_DATA "/readers.txt");
    for (const auto& c : cases) {
        CONTEXT(c.label);
        CHECK_EQ(readers.at(c.argument)(c.text), c.expected);
    }
    CHECK(cases.size() > 60);
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
    const std::tuple<const char*, std::string, std::size_t, std::size_t> cases[] = {
        {"empty records", repeated("%BeginFont\n%EndFont\n", 1'000'000), 0, 0},
        {"starts only", repeated("%BeginFont", 3'000'000), 0, 0},
        {"ends only", repeated("%EndFont", 3'000'000), 0, 0},
        {"a record that is not closed", "%BeginFont\nFontName:A\nFullName:B\n" + repeated("K:value\n", 3'000'000), 1,
         3},
        {"one long line", "%BeginFont\nFontName:A\nFullName:B\n" + repeated(": \r", 5'000'000), 1, 2},
        {"as many keys as lines", "%BeginFont\nFontName:A\nFullName:B\n" + distinct, 1, 300'002},
    };
    for (const auto& [label, list, count, fields] : cases) {
        CONTEXT(label);
        const PropertyList names = readList(list).names;
        CHECK_EQ(names.size(), count);
        CHECK_EQ(names["A"].size(), fields);
    }
}

// More different keys than the reader remembers from one record to the next, and again the usual ones.
TEST(ListsWithTooManyKeys) {
    std::string list;
    for (int i = 0; i < 12; ++i) {
        list += "%BeginFont\nFontName:" + std::to_string(i % 5) + "\nFullName:F" + std::to_string(i % 7) + "\n";
        for (int key = 0; key < 1000 && i % 2; ++key) list += "K" + std::to_string(i * 500 + key) + ":v\x8E\n";
        list += "FamilyName:x\nOutlineFileName:X\\y\nK1:1\nK1:2\n%EndFont\n";
    }
    const FontFileFinder find = [](std::string_view path) { return "/F/" + std::string(path); };
    reference::RecordingLog log;
    NamesCollection expected;
    reference::readFontList(textOf(list).characters, "/L", find, expected, log);
    const Reading reading = readList(list);
    CHECK_EQ(shortForm(reading.names), shortForm(std::move(expected).freeze()));
    CHECK_EQ(reading.log, log.lines);
}

// What a child that does this needs at its peak, in bytes.
double peakOf(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    rusage used{};
    CHECK(wait4(child, nullptr, 0, &used) == child);
    return static_cast<double>(used.ru_maxrss) * 1024;
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
    const double idle = peakOf([] {});
    for (const std::string* list : {&keys, &values, &records}) {
        const double multiple = (peakOf([&] { readList(*list); }) - idle) / static_cast<double>(list->size());
        CHECK(multiple > 1 && multiple < 14);  // 1 or less: nothing was measured
    }
}

TEST(LongEscapedNames) {
    std::string codes, broken;
    for (int i = 0; i < 60'000; ++i) {
        const std::string digits = platform::formatted("%04X", {i});
        codes += "\\" + digits;
        broken += "\\005C" + digits + "\\" + digits + "\\\\";
    }
    CHECK(propertylist::isValidUTF8(escapedNameForString_isUnicode(codes, true)));
    for (const bool isUnicode : {true, false}) {
        CHECK(propertylist::isValidUTF8(escapedNameForString_isUnicode(broken, isUnicode)));
        const std::string part = broken.substr(0, 3000);
        CHECK_EQ(escapedNameForString_isUnicode(part, isUnicode), reference::escapedName(part, isUnicode));
    }
}

TEST(PlainTextIsNotCopied) {
    const auto plain = std::make_shared<const std::string>("plain");
    CHECK(decodedText(plain).owner == plain && !decodedText(nullptr).owner);
    CHECK(readList("%BeginFont\nFontName:A\nFullName:B\n%EndFont").lookedUp.empty());
}
