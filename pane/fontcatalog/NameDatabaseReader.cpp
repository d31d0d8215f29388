#include "pane/fontcatalog/NameDatabaseReader.h"

#include "pane/fontcatalog/EscapedName.h"
#include "pane/fontcatalog/TextLines.h"
#include "propertylist/PropertyListArena.h"

#include <charconv>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace fontcatalog {
namespace {

using propertylist::PropertyListArena;

struct Section {
    std::string name;  // empty: nothing is collected
    std::optional<PropertyListArena::Text> fullName, styleName;
};

struct NameLine {
    std::string_view prefix;
    bool isUnicode;
    bool replaces;
    std::optional<PropertyListArena::Text> Section::*slot;
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

// The records of a database, which have one of three sequences of keys.
class Records {
public:
    Records(NamesCollection& names, std::shared_ptr<const std::string> text) : names_(names), arena_(std::move(text)) {}

    void readNameLine(std::string_view line, Section& section) {
        for (const NameLine& form : kNameLines) {
            auto& slot = section.*form.slot;
            if (!line.starts_with(form.prefix) || (slot && !form.replaces)) continue;
            slot = nameIn(line.substr(form.prefix.size()), form.isUnicode);
            return;
        }
    }

    void store(const Section& section) {
        if (section.name.empty() || (!section.fullName && !section.styleName)) return;
        PropertyListArena::Text values[2];
        std::size_t count = 0;
        for (const auto& value : {section.fullName, section.styleName})
            if (value) values[count++] = *value;
        const auto keys = !section.styleName ? fullName_ : section.fullName ? both_ : styleName_;
        names_.exchange(arena_.string(arena_.copy(section.name)), arena_.dictionary(keys, {values, count}));
    }

private:
    PropertyListArena::Text nameIn(std::string_view escaped, bool isUnicode) {
        if (escaped.find('\\') == std::string_view::npos) return arena_.part(escaped);
        return arena_.copy(escapedNameForString_isUnicode(escaped, isUnicode));
    }
    PropertyListArena::Keys keysOf(std::initializer_list<std::string_view> names) {
        std::vector<PropertyListArena::Text> texts;
        for (const std::string_view name : names) texts.push_back(arena_.copy(name));
        return arena_.keys(texts);
    }

    NamesCollection& names_;
    PropertyListArena arena_;
    PropertyListArena::Keys fullName_ = keysOf({"FullName"}), styleName_ = keysOf({"StyleName"}),
                            both_ = keysOf({"FullName", "StyleName"});
};

// Tells a number too large for a float from one too small.
bool isLarge(std::string_view number) {
    const std::size_t exponent = number.find_first_of("eE");
    if (exponent != std::string_view::npos) return number.substr(exponent + 1, 1) != "-";
    return number.find_first_of("123456789") < number.find('.');
}

}  // namespace

void readNameDatabase(const Text& text, NamesCollection& names) {
    Records records(names, text.owner);
    Section section;
    TextLines lines(text.characters);
    for (std::string_view line; lines.next(line);) {
        if (line.front() == '[') {
            records.store(section);
            section = {sectionName(line), {}, {}};
        } else if (line.front() != ';' && !section.name.empty()) {
            records.readNameLine(line, section);
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
