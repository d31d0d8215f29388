#include "fuzz/Reference.h"
#include "pane/fontcatalog/AdobeNames.h"
#include "pane/fontcatalog/EscapedName.h"
#include "pane/fontcatalog/FontListReader.h"
#include "pane/fontcatalog/NameDatabaseReader.h"
#include "propertylist/Codec.h"
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

FileText textOf(std::string_view bytes) { return decodedText(std::make_shared<const std::string>(bytes)); }

std::optional<std::string> find(std::string_view path) {
    return path == "gone" ? std::nullopt : std::optional("/F/" + std::string(path));
}

reference::RecordingLog sLog;  // of the list read last

PropertyList readList(std::string_view bytes, NamesCollection names = {}) {
    sLog.lines.clear();
    readFontList(listText(std::make_shared<const std::string>(bytes)), "/L", find, sLog, names);
    return std::move(names).freeze();
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

NamesCollection databaseOf(std::string_view bytes) {
    NamesCollection names;
    readNameDatabase(textOf(bytes), names);
    return names;
}

std::string joined(const reference::RecordingLog& log) {
    std::string text;
    for (const std::string& line : log.lines) text += line + "|";
    return text;
}

std::string comparison(const std::string& xml) {
    reference::RecordingLog log;
    const PropertyList sets = propertylist::decodePropertyList("<plist><dict>" + xml + "</dict></plist>");
    return !sets ? "no list" : isFileSetUnchanged(sets["stored"], sets["current"], log) ? "unchanged" : joined(log);
}

}  // namespace

TEST(TextsAndWhatTheReadersMakeOfThem) {
    const std::map<std::string, std::function<std::string(const std::string&)>> readers = {
        {"font list", [](auto& text) { return shortForm(readList(text)); }},
        {"name database", [](auto& text) { return shortForm(databaseOf(text).freeze()); }},
        {"log of list over database", [](auto& text) { return readList(text, databaseOf(text)) ? joined(sLog) : ""; }},
        {"file sets", comparison},
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

// Sizes at which anything but one pass over the text would not come to an end.
TEST(FontListsBuiltToHurt) {
    const auto repeated = [](std::string_view part, std::size_t count) {
        std::string text;
        while (count-- > 0) text += part;
        return text;
    };
    std::string start = "%BeginFont\nFontName:A\nFullName:B\n", distinct = start;
    for (int i = 0; i < 300'000; ++i) distinct += "Key" + std::to_string(i) + ":v\n";
    const std::pair<std::string, std::size_t> cases[] = {
        {repeated("%BeginFont\n%EndFont\n", 1'000'000), 0},
        {repeated("%BeginFont", 3'000'000), 0},
        {repeated("%EndFont", 3'000'000), 0},
        {start + repeated("K:value\n", 3'000'000), 3},
        {start + repeated(": \r", 5'000'000), 2},
        {distinct, 300'002},
    };
    for (const auto& [list, fields] : cases) {
        CONTEXT(list.substr(0, 60));
        const PropertyList names = readList(list);
        CHECK(names["A"].size() == fields && names.size() == (fields ? 1U : 0U));
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
    reference::RecordingLog log;
    NamesCollection expected;
    reference::readFontList(textOf(list).characters, "/L", find, expected, log);
    CHECK_EQ(shortForm(readList(list)), shortForm(std::move(expected).freeze()));
    CHECK_EQ(sLog.lines, log.lines);
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
        const std::string key = platform::formatted("%05X", {i});
        keys += key + ":x\n";
        values += key + ":\x8E" + key + "\n";
        if (i < 100'000) records += "%BeginFont\nFontName:" + key + "\nFullName:B\n" + key + ":1\n%EndFont\n";
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
}
