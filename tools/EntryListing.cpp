#include "tools/EntryListing.h"

#include "linux/texts/DisplayText.h"
#include "linux/texts/TextColumns.h"
#include "propertylist/ASCII.h"
#include "settings/EntryList.h"
#include "tools/Localized.h"

#include <algorithm>
#include <charconv>
#include <iterator>

using namespace entrylist;
using namespace platform;
using namespace settings;

namespace tools {
namespace {

// The items of the window's menu.
constexpr std::string_view kDupeHandling[] = {"every", "one", "marked"};

// What the window's controls let a user choose.
std::int64_t largestValue(const Option& option) {
    return option.type == OptionType::Choice ? std::ssize(kDupeHandling) - 1 : kLargestFontSize;
}

std::string lower(std::string_view text) {
    std::string word(text);
    for (char& c : word) c = propertylist::lowerASCII(c);
    return word;
}

std::string kindOf(const PropertyList& entry) {
    if (!hasType(entry, kRegExType)) return linux::displayText(entry[kTypeKey].stringValue());
    std::int64_t kind = entry[kRegExTypeKey].integerValue();
    const std::string names[] = {localized("name"), localized("identifier"), localized("path")};
    bool isKnown = kind >= 0 && kind < std::ssize(names);
    return localizedFormat("RegEx on %@", isKnown ? names[kind] : std::to_string(kind));
}

// With what else is known of an application: an expression may be held against its identifier and its path.
std::string dataOf(const PropertyList& entry) {
    std::string known;
    if (hasType(entry, kPathType) || hasType(entry, kCreatorType))
        for (std::string_view key : {kIdentifierKey, kPathKey})
            if (std::string_view text = bytesKept(entry[key]); !text.empty() && text != bytesKept(entry[kDataKey]))
                known.append(known.empty() ? "" : ", ").append(text);
    const std::string data = linux::displayText(bytesKept(entry[kDataKey]));
    return known.empty() ? data : data + " (" + linux::displayText(known) + ")";
}

std::vector<std::string> rowOf(std::size_t index, const PropertyList& entry) {
    bool isOn = shownValue(entry[kSettingsKey], *optionForKey("Enabled")) != 0;
    return {std::to_string(index), isOn ? localized("on") : localized("off"), kindOf(entry),
            linux::displayText(entry[kNameKey].stringValue()), dataOf(entry)};
}

}  // namespace

std::string entryTable(const std::vector<PropertyList>& list) {
    std::vector<std::vector<std::string>> rows{
        {localized("INDEX"), localized("STATE"), localized("KIND"), localized("NAME"), localized("DATA")}};
    for (const PropertyList& entry : list) rows.push_back(rowOf(rows.size() - 1, entry));
    return linux::tableText(rows);
}

std::vector<PropertyList> repairedList(const PropertyList& stored) {
    std::vector<PropertyList> list = mutableArray(stored);
    while (putGlobalFirst(list)) {
    }
    return list;
}

std::size_t rowAt(const EntryAddress& address, std::span<const PropertyList> list) {
    const std::vector<std::size_t> rows = rowsAt(address, list);
    if (rows.size() == 1) return rows.front();
    if (address.kind == EntryAddress::Kind::Row)
        throw refused("there is no entry %d; the last one is %d", address.row, list.size() - 1);
    const std::string name = linux::displayText(textOf(address));
    if (rows.empty()) throw refused("there is no entry %@", name);
    std::string numbers;
    for (std::size_t row : rows) numbers += (numbers.empty() ? "" : ", ") + std::to_string(row);
    throw refused("%@ is not one entry but several: %@", name, numbers);
}

std::optional<std::int64_t> optionValueFromText(const Option& option, std::string_view text) {
    if (option.type == OptionType::Boolean) {
        const std::string word = lower(text);
        for (std::string_view on : {"true", "yes", "on", "1"})
            if (word == on) return 1;
        for (std::string_view off : {"false", "no", "off", "0"})
            if (word == off) return 0;
        return std::nullopt;
    }
    if (option.type == OptionType::Choice)
        if (auto found = std::ranges::find(kDupeHandling, lower(text)); found != std::end(kDupeHandling))
            return found - std::begin(kDupeHandling);
    std::int64_t number = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    bool isNumber = error == std::errc() && end == text.data() + text.size();
    if (!isNumber || number < 0 || number > largestValue(option)) return std::nullopt;
    return number;
}

std::string acceptedValues(const Option& option) {
    if (option.type == OptionType::Boolean) return localized("true or false");
    if (option.type == OptionType::Choice) return localized("every (0), one (1) or marked (2)");
    return localizedFormat("0 to %d", largestValue(option));
}

std::vector<std::string_view> valueWords(const Option& option) {
    if (option.type == OptionType::Boolean) return {"true", "false"};
    if (option.type == OptionType::Choice) return {std::begin(kDupeHandling), std::end(kDupeHandling)};
    return {};
}

}  // namespace tools
