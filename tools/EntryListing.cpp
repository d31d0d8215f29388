#include "tools/EntryListing.h"

#include "linux/texts/DisplayText.h"
#include "linux/texts/TextColumns.h"
#include "propertylist/ASCII.h"
#include "settings/EntryList.h"
#include "tools/Localized.h"

#include <charconv>

using namespace platform;
using namespace settings;

namespace tools {
namespace {

// What the window's controls let a user choose.
std::int64_t largestValue(const Option& option) { return option.key == "DupeHandling" ? 2 : 255; }

std::string kindOf(const PropertyList& entry) {
    if (!hasType(entry, kRegExType)) return linux::displayText(entry[kTypeKey].stringValue());
    std::int64_t kind = entry[kRegExTypeKey].integerValue();
    const std::string names[] = {localized("name"), localized("identifier"), localized("path")};
    bool isKnown = kind >= 0 && kind < std::ssize(names);
    return localizedFormat("RegEx on %@", isKnown ? names[kind] : std::to_string(kind));
}

std::vector<std::string> rowOf(std::size_t index, const PropertyList& entry) {
    bool isOn = shownValue(entry[kSettingsKey], *optionForKey("Enabled")) != 0;
    return {std::to_string(index), isOn ? localized("on") : localized("off"), kindOf(entry),
            linux::displayText(entry[kNameKey].stringValue()), linux::displayText(bytesKept(entry[kDataKey]))};
}

}  // namespace

std::string entryTable(const std::vector<PropertyList>& list) {
    std::vector<std::vector<std::string>> rows{
        {localized("INDEX"), localized("STATE"), localized("KIND"), localized("NAME"), localized("DATA")}};
    for (const PropertyList& entry : list) rows.push_back(rowOf(rows.size() - 1, entry));
    return linux::tableText(rows);
}

Refusal noEntry(int index, std::size_t count) {
    return refused("there is no entry %d; the last one is %d", index, count - 1);
}

std::optional<std::int64_t> optionValueFromText(const Option& option, std::string_view text) {
    if (option.type == OptionType::Boolean) {
        std::string word(text);
        for (char& c : word) c = propertylist::lowerASCII(c);
        for (std::string_view on : {"true", "yes", "on", "1"})
            if (word == on) return 1;
        for (std::string_view off : {"false", "no", "off", "0"})
            if (word == off) return 0;
        return std::nullopt;
    }
    std::int64_t number = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    bool isNumber = error == std::errc() && end == text.data() + text.size();
    if (!isNumber || number < 0 || number > largestValue(option)) return std::nullopt;
    return number;
}

std::string acceptedValues(const Option& option) {
    if (option.type == OptionType::Boolean) return localized("true or false");
    return localizedFormat("0 to %d", largestValue(option));
}

}  // namespace tools
