#include "fuzz/Reference.h"

#include "pane/fontcatalog/TextEncoding.h"
#include "propertylist/Unicode.h"

#include <algorithm>
#include <cstdlib>

namespace reference {
namespace {

using fontcatalog::NamesCollection;
using platform::MutableDictionary;
using platform::PropertyList;

const std::u16string kWhiteSpace =
    u" \t\n\v\f\r\x85\xA0\x1680\x2000\x2001\x2002\x2003\x2004\x2005\x2006\x2007\x2008\x2009\x200A\x2028\x2029\x202F"
    u"\x205F\x3000";

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::u16string> parts(1);
    for (const char16_t unit : propertylist::utf16FromUTF8(text))
        if (unit == u'\r' || unit == u'\n')
            parts.emplace_back();
        else
            parts.back() += unit;
    std::vector<std::string> lines;
    for (std::u16string& part : parts) {
        while (!part.empty() && kWhiteSpace.find(part.front()) != part.npos) part.erase(0, 1);
        while (!part.empty() && kWhiteSpace.find(part.back()) != part.npos) part.pop_back();
        if (!part.empty()) lines.push_back(propertylist::repairedUTF8FromUTF16(part));
    }
    return lines;
}

std::string replaceAll(std::string text, const std::string& pattern, const std::string& by) {
    for (std::size_t at = text.find(pattern); at != text.npos; at = text.find(pattern, at + by.size()))
        text.replace(at, pattern.size(), by);
    return text;
}

PropertyList recordIn(std::string_view text, std::string_view path, const fontcatalog::FontFileFinder& find,
                      platform::Log& log) {
    MutableDictionary record;
    for (const std::string& line : linesOf(text)) {
        const std::size_t colon = line.find(':');
        if (colon == line.npos) continue;
        const std::string value = line.substr(colon + 1);
        if (value == "ITC New Baskerville") log("What");
        if (!value.empty()) record.set(line.substr(0, colon), value);
    }
    if (record["FullName"] && record["FamilyName"]) {
        record.set("RealFullName", record["FullName"]);
        record.set("FullName", record["FamilyName"]);
    }
    if (record["OutlineFileName"]) {
        record.set("FontListFilePath", path);
        const auto found = find(replaceAll(std::string(record["OutlineFileName"].stringValue()), "\\", "/"));
        if (found) record.set("FontFilePath", *found);
    }
    return std::move(record).freeze();
}

void keep(const PropertyList& record, NamesCollection& names, platform::Log& log) {
    const PropertyList name = record["FontName"], fullName = record["FullName"];
    if (!name || !fullName) return;
    const PropertyList old = names[name.stringValue()];
    if (old && old["FullName"] != fullName) {
        log("Multiple entries for font %@. Old one is %@. New one is %@", name, old["FullName"], fullName);
        log("%@ vs %@", old, record);
    }
    names.set(name.stringValue(), record);
}

bool startsWith(const std::string& line, const std::string& prefix) {
    return line.compare(0, prefix.size(), prefix) == 0;
}

}  // namespace

void readFontList(std::string_view view, std::string_view path, const fontcatalog::FontFileFinder& find,
                  NamesCollection& names, platform::Log& log) {
    const std::string text(view);
    std::size_t location = 0;
    while (location < text.size()) {
        const std::size_t begin = text.find("%BeginFont", location);
        if (begin == text.npos) return;
        location = std::min(text.find("%EndFont", begin), text.size());
        keep(recordIn(text.substr(begin, location - begin), path, find, log), names, log);
        for (int i = 0; i < 2; ++i)
            if (location + 1 <= text.size()) ++location;
    }
}

void readNameDatabase(std::string_view text, NamesCollection& names) {
    std::string name;
    MutableDictionary section;
    for (const std::string& line : linesOf(text)) {
        if (startsWith(line, ";")) continue;
        if (startsWith(line, "[")) {
            if (!name.empty() && section.size() > 0) names.set(name, std::move(section).freeze());
            section = {};
            name = line;
            if (const std::size_t bracket = name.find("]"); bracket != name.npos) name.erase(bracket, 1);
            name.erase(0, 1);
        } else if (name.empty()) {
            continue;
        } else if (startsWith(line, "f=1,")) {
            section.set("FullName", escapedName(line.substr(4), false));
        } else if (startsWith(line, "f=") && !section["FullName"]) {
            section.set("FullName", escapedName(line.substr(2), true));
        } else if (startsWith(line, "s=,")) {
            section.set("StyleName", escapedName(line.substr(3), true));
        } else if (startsWith(line, "s=") && !section["StyleName"]) {
            section.set("StyleName", escapedName(line.substr(2), true));
        }
    }
}

std::string escapedName(std::string_view text, bool isUnicode) {
    const std::u16string input = propertylist::utf16FromUTF8(text);
    std::u16string result = input;
    for (std::size_t at = input.find(u'\\'); at != input.npos; at = input.find(u'\\', at + 1)) {
        const std::u16string span = input.substr(at + 1, isUnicode ? 4 : 2);
        std::u16string digits = span;
        while (!digits.empty() && kWhiteSpace.find(digits[0]) != digits.npos) digits.erase(0, 1);
        if (digits.substr(0, 2) == u"0x" || digits.substr(0, 2) == u"0X") digits.erase(0, 2);
        digits = digits.substr(0, digits.find_first_not_of(u"0123456789abcdefABCDEF"));
        if (digits.empty()) continue;
        const unsigned long number = std::strtoul(propertylist::repairedUTF8FromUTF16(digits).c_str(), nullptr, 16);
        const char16_t unit = isUnicode ? static_cast<char16_t>(number)
                                        : fontcatalog::macRomanCharacter(static_cast<unsigned char>(number));
        const std::u16string pattern = u"\\" + span;
        for (std::size_t hit = result.find(pattern); hit != result.npos; hit = result.find(pattern, hit + 1))
            result.replace(hit, pattern.size(), 1, unit);
    }
    return propertylist::repairedUTF8FromUTF16(result);
}

}  // namespace reference
