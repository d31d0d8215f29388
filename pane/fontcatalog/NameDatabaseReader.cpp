#include "pane/fontcatalog/NameDatabaseReader.h"

#include "pane/fontcatalog/EscapedName.h"
#include "pane/fontcatalog/TextLines.h"

#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <system_error>

namespace fontcatalog {
namespace {

struct Section {
    std::string name;  // empty: nothing is collected
    std::optional<std::string> fullName, styleName;

    void store(NamesCollection& names) const {
        if (name.empty() || (!fullName && !styleName)) return;
        platform::MutableDictionary record;
        if (fullName) record.set("FullName", *fullName);
        if (styleName) record.set("StyleName", *styleName);
        names.set(name, std::move(record).freeze());
    }
};

struct NameLine {
    std::string_view prefix;
    bool isUnicode;
    bool replaces;
    std::optional<std::string> Section::*slot;
};

// In the order in which a line is tried: "f=1," is also an "f=" line, "s=," also an "s=" line.
constexpr NameLine kNameLines[] = {
    {"f=1,", false, true, &Section::fullName},
    {"f=", true, false, &Section::fullName},
    {"s=,", true, true, &Section::styleName},
    {"s=", true, false, &Section::styleName},
};

std::string sectionName(std::string_view header) {
    std::string name(header);
    if (const std::size_t bracket = name.find(']'); bracket != std::string::npos) name.erase(bracket, 1);
    return name.substr(1);
}

void readNameLine(std::string_view line, Section& section) {
    for (const NameLine& form : kNameLines) {
        auto& slot = section.*form.slot;
        if (!line.starts_with(form.prefix) || (slot && !form.replaces)) continue;
        slot = escapedNameForString_isUnicode(line.substr(form.prefix.size()), form.isUnicode);
        return;
    }
}

// Tells a number too large for a float from one too small.
bool isLarge(std::string_view number) {
    const std::size_t exponent = number.find_first_of("eE");
    if (exponent != std::string_view::npos) return number.substr(exponent + 1, 1) != "-";
    return number.find_first_of("123456789") < number.find('.');
}

}  // namespace

void readNameDatabase(std::string_view text, NamesCollection& names) {
    Section section;
    TextLines lines(text);
    for (std::string_view line; lines.next(line);) {
        if (line.front() == '[') {
            section.store(names);
            section = {sectionName(line), {}, {}};
        } else if (line.front() != ';' && !section.name.empty()) {
            readNameLine(line, section);
        }
    }
}

float nameDatabaseVersion(std::string_view text) {
    constexpr std::string_view kMark = "version=";
    const std::size_t found = text.find(kMark);
    if (found == std::string_view::npos) return 0;
    std::string_view number = trimmed(text.substr(found + kMark.size()));
    const bool isNegative = number.starts_with('-');
    if (isNegative || number.starts_with('+')) number.remove_prefix(1);
    // The library would also read "inf", "nan" and a second sign.
    if (number.empty() || number.find_first_of("0123456789.") != 0) return 0;
    float value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range && isLarge({number.data(), result.ptr}))
        value = std::numeric_limits<float>::infinity();
    return isNegative ? -value : value;
}

}  // namespace fontcatalog
