#include "fuzz/Reference.h"
#include "pane/fontcatalog/AdobeNames.h"
#include "pane/fontcatalog/EscapedName.h"
#include "pane/fontcatalog/FontListReader.h"
#include "pane/fontcatalog/NameDatabaseReader.h"
#include "propertylist/Codec.h"
#include "propertylist/Unicode.h"
#include "tests/support/Check.h"

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

TEST(NamesKeepNoMoreTextThanTheyNeed) {
    const std::string record = "%BeginFont\nFontName:A\nFullName:B\nFamilyName:C\nOutlineFileName:\\o\n%EndFont\n";
    std::string dense;
    for (int i = 0; i < 60'000; ++i) dense += "%BeginFont\nFontName:" + std::to_string(i) + "\nFullName:B\n%EndFont\n";
    const std::pair<std::string, bool> lists[] = {{record + std::string(2'000'000, '\n'), true},
                                                  {record + std::string(1'000, '\n'), false},  // not worth it
                                                  {dense, false}};
    for (const auto& [list, isFreed] : lists) {
        auto text = std::make_shared<const std::string>(list);
        const std::weak_ptr<const std::string> held = text;
        NamesCollection names;
        readFontList(listText(std::move(text)), "/L", find, sLog, names);
        CHECK(!held.expired());  // plain text is not copied
        KeptText().add(list.size(), names);
        CHECK_EQ(held.expired(), isFreed);
        CHECK_EQ(std::move(names).freeze(), readList(list));
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
