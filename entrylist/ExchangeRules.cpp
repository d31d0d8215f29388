// What a document of entries must be to be taken.
#include "entrylist/Exchange.h"
#include "platform/Localizable.h"
#include "propertylist/Format.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"

#include <algorithm>
#include <array>

using namespace platform;
using namespace settings;

namespace entrylist {
namespace {

using Type = PropertyList::Type;

// What the values under the keys of an entry may be.
struct KeyRule {
    std::string_view key;
    bool (*holds)(const PropertyList& value);
    std::string_view reason;  // when it does not
};

bool isText(const PropertyList& value) { return value.isString(); }
bool isKeptBytes(const PropertyList& value) { return value.isString() || value.isData(); }
bool isNumber(const PropertyList& value) { return value.isNumber(); }
bool isDictionary(const PropertyList& value) { return value.isDictionary(); }

constexpr std::string_view kMustBeText = localizable("this must be text");
constexpr std::string_view kMustBeNumber = localizable("this must be a number, or true or false");

constexpr std::array<KeyRule, 7> kRules{{
    {kNameKey, isText, kMustBeText},
    {kDataKey, isKeptBytes, kMustBeText},
    {kIdentifierKey, isKeptBytes, kMustBeText},
    {kCreatorKey, isKeptBytes, kMustBeText},
    {kPathKey, isKeptBytes, kMustBeText},
    {kRegExTypeKey, isNumber, kMustBeNumber},
    {kSettingsKey, isDictionary, localizable("this must be a dictionary of options")},
}};

constexpr std::array kTypes{kGlobalType, kIdentifierType, kCreatorType, kPathType, kRegExType};

ExchangeProblem problemOfKeys(const PropertyList& entry) {
    if (!entry.isDictionary()) return {{}, localizable("this is no entry")};
    if (std::ranges::find(kTypes, entry[kTypeKey].stringValue()) == kTypes.end())
        return {std::string(kTypeKey),
                localizable("an entry has one of the types Global, Identifier, Creator, Path and RegEx")};
    for (const KeyRule& rule : kRules)
        if (entry[rule.key] && !rule.holds(entry[rule.key])) return {std::string(rule.key), rule.reason};
    if (hasType(entry, kRegExType) && entry[kDataKey].isData()) return {std::string(kDataKey), kMustBeText};
    for (const Option& option : options())
        if (const PropertyList& value = entry[kSettingsKey][option.key]; value && !value.isNumber())
            return {std::string(kSettingsKey).append(".").append(option.key), kMustBeNumber};
    return {};
}

// The limits on what is in an entry, wherever in it.
class Meter {
public:
    ExchangeProblem measure(const PropertyList& entry) { return measure(entry, 0); }

private:
    ExchangeProblem measure(const PropertyList& value, unsigned depth) {
        if (++values_ > kMostExchangedValues)
            return {{}, localizable("there are more than %d values"), kMostExchangedValues};
        if (value.stringValue().size() > kLongestExchangedText || value.dataValue().size() > kLongestExchangedText)
            return {{}, localizable("a text is longer than %d bytes"), kLongestExchangedText};
        const bool isContainer = value.isArray() || value.isDictionary();
        if (isContainer && depth >= kDeepestExchangedEntry)
            return {{}, localizable("this is nested deeper than %d levels"), kDeepestExchangedEntry};
        for (const PropertyList& element : value.elements())
            if (ExchangeProblem problem = measure(element, depth + 1)) return problem;
        for (const auto& [key, member] : value.entries()) {
            if (ExchangeProblem problem = measure(key, depth + 1)) return problem;
            if (ExchangeProblem problem = measure(member, depth + 1)) return problem;
        }
        return {};
    }

    std::size_t values_ = 0;
};

ExchangeProblem problemOfEnvelope(const PropertyList& document) {
    const PropertyList &version = document[kVersionKey], &entries = document[kEntriesKey];
    if (document[kFormatKey].stringValue() != kExchangeFormat)
        return {{}, localizable("these are no exported entries")};
    if (version.type() != Type::Integer || version.integerValue() < 1)
        return {std::string(kVersionKey), localizable("this must be a whole number from 1")};
    if (version.integerValue() > kExchangeVersion)
        return {
            {},
            localizable("a newer version of Typeslate has made this; the newest format that can be read here is %d"),
            kExchangeVersion};
    if (!entries.isArray()) return {std::string(kEntriesKey), localizable("this must be a list of entries")};
    if (entries.size() > kMostExchangedEntries)
        return {std::string(kEntriesKey), localizable("there are more than %d entries"), kMostExchangedEntries};
    return {};
}

}  // namespace

ExchangeProblem problemOf(const PropertyList& document) {
    ExchangeProblem problem = problemOfEnvelope(document);
    if (problem) return problem;
    Meter meter;
    std::size_t place = 0;
    for (const PropertyList& entry : document[kEntriesKey].elements()) {
        problem = meter.measure(entry);
        if (!problem) problem = problemOfKeys(entry);
        if (problem) {
            problem.place = propertylist::formatted(
                "%@[%d]%@%@", {kEntriesKey, place, problem.place.empty() ? "" : ".", problem.place});
            return problem;
        }
        ++place;
    }
    return {};
}

}  // namespace entrylist
