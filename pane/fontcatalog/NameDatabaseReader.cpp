#include "pane/fontcatalog/NameDatabaseReader.h"

#include "pane/fontcatalog/EscapedName.h"
#include "pane/fontcatalog/TextLines.h"
#include "propertylist/PropertyListArena.h"

#include <charconv>
#include <limits>
#include <string>
#include <system_error>

namespace fontcatalog {
namespace {

using propertylist::PropertyListArena;
using String = PropertyListArena::String;

struct Section {
    std::string name;  // empty: nothing is collected
    String fullName, styleName;
};

struct NameLine {
    std::string_view prefix;
    bool isUnicode;
    bool replaces;
    String Section::*slot;
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

class DatabaseReader {
public:
    DatabaseReader(const FileText& text, NamesCollection& names)
        : text_(text.characters), names_(names), arena_(text.owner) {}

    void readAll() {
        Section section;
        LineTaker lines(text_);
        for (std::string_view taken; lines.take(taken);) {
            const std::string_view line = trimmedLine(taken);
            if (line.starts_with('[')) {
                store(section);
                section = {sectionName(line), {}, {}};
            } else if (!line.starts_with(';') && !section.name.empty()) {
                readNameLine(line, section);
            }
        }
    }

private:
    void readNameLine(std::string_view line, Section& section) {
        for (const NameLine& form : kNameLines) {
            String& slot = section.*form.slot;
            if (!line.starts_with(form.prefix) || (slot && !form.replaces)) continue;
            slot = decodedName(line.substr(form.prefix.size()), form.isUnicode);
            return;
        }
    }

    String decodedName(std::string_view escaped, bool isUnicode) {
        if (escaped.find('\\') == std::string_view::npos) return arena_.string(escaped);
        return arena_.string(escapedNameForString_isUnicode(escaped, isUnicode));
    }

    void store(const Section& section) {
        if (section.name.empty() || (!section.fullName && !section.styleName)) return;
        PropertyListArena::Field fields[2];
        std::size_t count = 0;
        if (section.fullName) fields[count++] = {fullNameKey_, section.fullName};
        if (section.styleName) fields[count++] = {styleNameKey_, section.styleName};
        names_.exchange(arena_.value(arena_.string(section.name)), arena_.dictionary({fields, count}));
    }

    const std::string_view text_;
    NamesCollection& names_;
    PropertyListArena arena_;
    const String fullNameKey_ = arena_.string("FullName"), styleNameKey_ = arena_.string("StyleName");
};

// Tells a number too large for a float from one too small.
bool isLarge(std::string_view number) {
    const std::size_t exponent = number.find_first_of("eE");
    if (exponent != std::string_view::npos) return number.substr(exponent + 1, 1) != "-";
    return number.find_first_of("123456789") < number.find('.');
}

}  // namespace

void readNameDatabase(const FileText& text, NamesCollection& names) { DatabaseReader(text, names).readAll(); }

float nameDatabaseVersion(std::string_view text) {
    constexpr std::string_view kMark = "version=";
    const std::size_t found = text.find(kMark);
    if (found == std::string_view::npos) return 0;
    std::string_view number = propertylist::trimmed(text.substr(found + kMark.size()));
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
