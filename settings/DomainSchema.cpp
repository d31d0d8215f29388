#include "settings/DomainSchema.h"

#include "platform/Localizable.h"
#include "propertylist/ASCII.h"
#include "propertylist/Format.h"
#include "settings/DefaultExclusions.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

using platform::localizable;
using platform::PropertyList;

namespace settings {
namespace {

constexpr std::array kTypes{kGlobalType, kIdentifierType, kCreatorType, kPathType, kRegExType};
constexpr std::array<std::string_view, 3> kRegExTypes{"The application's name", "Its bundle identifier", "Its path"};
constexpr std::array<std::string_view, 3> kCopies{"Show every copy", "Show one copy", "Show one copy, marked"};

constexpr std::array kDomainRules{
    ValueRule{kEntryListKey, ValueForm::EntryList, "The entries, the Global one first, the others in the user's order"},
    ValueRule{kDisabledKey, ValueForm::SpeltBoolean, "The master switch, negated: the module does nothing anywhere", 0},
    ValueRule{kLogStuffKey, ValueForm::SpeltBoolean, "Pane and module log what they do", 0},
    ValueRule{kDontShowLogSheetKey, ValueForm::SpeltBoolean, "Turning logging on does not warn any more", 0},
    ValueRule{kAddedDefaultExclusionsKey, ValueForm::SpeltNumber,
              "Whether the shipped entries were merged at least once: a boolean is stored, and 0 means no", 0},
    ValueRule{kDefaultExclusionsVersionKey, ValueForm::SpeltNumber, "Version of the shipped entries merged last", 0},
    ValueRule{kCheckForUpdatesKey, ValueForm::SpeltBoolean, "Updates are looked for from time to time", 1},
    ValueRule{kCheckIntervalKey, ValueForm::Number,
              "Seconds from one look to the next; when missing a week, or a day for a beta version"},
    ValueRule{kLastCheckDateKey, ValueForm::Date, "When the last look was begun"},
    ValueRule{kLastRunSystemVersionKey, ValueForm::Number,
              "The system's version then, in decimal nibbles: 12.5 is 0x120500", 0},
    ValueRule{kLastCheckStatusKey, ValueForm::Text, "What the updater said last"},
};

constexpr std::array kEntryRules{
    ValueRule{kTypeKey, ValueForm::EntryType, "How the application that the entry is for is recognised"},
    ValueRule{kNameKey, ValueForm::Text, "The name shown"},
    ValueRule{kDataKey, ValueForm::Bytes,
              "What is recognised: the bundle identifier, creator code, path or regular expression; Global has none"},
    ValueRule{kIdentifierKey, ValueForm::Bytes, "The application's bundle identifier, whatever the type"},
    ValueRule{kCreatorKey, ValueForm::Bytes, "Its creator code, the four bytes as they lie in memory"},
    ValueRule{kPathKey, ValueForm::Bytes, "Where it was when it was added"},
    ValueRule{kRegExTypeKey, ValueForm::Number, "What a regular expression is held against", 0, kRegExTypes},
    ValueRule{kSettingsKey, ValueForm::Options, "The options of the font menus"},
};

// What the window says of the option's control, too.
struct Meaning {
    std::string_view option, text;
};
constexpr std::array<Meaning, 16> kMeanings{{
    {"Enabled", "Off: Typeslate leaves the font menus of the selected entry alone"},
    {"CheckMenuItems", "Puts a check mark beside the font of the selected text"},
    {"ShowFontInFace", "Writes the name of each font in that font"},
    {"DupeHandling", "What to do with fonts that are installed more than once"},
    {"ShowSets", "Puts your font sets into submenus"},
    {"ChangeSize", "Writes the names in the given size instead of the menu's own"},
    {"FontSize", "The size in points"},
    {"ShowIcons", "Puts an icon for the font's format beside its name"},
    {"HierarchicalMenu", "Puts the faces of a family into a submenu of their own"},
    {"AllFontsGroup", "Keeps one submenu in which every font is found"},
    {"ScriptSort", "Puts fonts for the same writing system together"},
    {"IncludeFAPSets", "Includes the sets of FontAgent Pro, when it is installed"},
    {"IncludeFEXSets", "Includes the sets of Linotype FontExplorer X, when it is installed"},
    {"IncludeSuitcaseSets", "Includes the sets of Suitcase, when it is installed"},
    {"GenerateInactivePreview", "Also draws the names of fonts that a font manager has not activated"},
    {"ModifyFontPanel", "Also applies to the font panel of applications that have one"},
}};

ValueRule ruleOf(const Option& option) {
    ValueRule rule{option.key, ValueForm::Number, {}, option.shownWhenMissing};
    auto meaning = std::ranges::find(kMeanings, option.key, &Meaning::option);
    if (meaning != kMeanings.end()) rule.meaning = meaning->text;
    if (option.type == OptionType::Boolean) rule.form = ValueForm::Boolean;
    if (option.type == OptionType::Choice) rule.choices = kCopies;
    if (option.type == OptionType::Integer) rule.largestTyped = kLargestFontSize;
    return rule;
}

constexpr std::string_view kMustBeText = localizable("this must be text");
constexpr std::string_view kMustBeNumber = localizable("this must be a number, or true or false");

bool isSpeltBoolean(const PropertyList& value) {
    constexpr std::array<std::string_view, 6> kWords{"true", "yes", "1", "false", "no", "0"};
    return value.isNumber() || std::ranges::any_of(kWords, [&](std::string_view word) {
               return propertylist::equalIgnoringASCIICase(value.stringValue(), word);
           });
}

bool isSpeltNumber(const PropertyList& value) {
    std::string_view digits = value.stringValue();
    if (digits.starts_with('+') || digits.starts_with('-')) digits.remove_prefix(1);
    const bool isDecimal = !digits.empty() && digits.find_first_not_of("0123456789") == digits.npos;
    return isSpeltBoolean(value) || isDecimal;
}

// The reason why a value, or its absence, is not taken; empty when it is.
std::string_view complaintAbout(ValueForm form, const PropertyList& value) {
    auto unless = [](bool isTaken, std::string_view reason) { return isTaken ? std::string_view() : reason; };
    switch (form) {
        case ValueForm::Boolean:
        case ValueForm::Number:
            return unless(value.isNumber(), kMustBeNumber);
        case ValueForm::SpeltBoolean:
            return unless(isSpeltBoolean(value), kMustBeNumber);
        case ValueForm::SpeltNumber:
            return unless(isSpeltNumber(value), kMustBeNumber);
        case ValueForm::Date:
            return unless(value.isDate(), localizable("this must be a date"));
        case ValueForm::Text:
            return unless(value.isString(), kMustBeText);
        case ValueForm::Bytes:
            return unless(value.isString() || value.isData(), kMustBeText);
        case ValueForm::EntryType:
            return unless(std::ranges::find(kTypes, value.stringValue()) != kTypes.end(),
                          localizable("an entry has one of the types Global, Identifier, Creator, Path and RegEx"));
        case ValueForm::Options:
            return unless(value.isDictionary(), localizable("this must be a dictionary of options"));
        case ValueForm::EntryList:
            return unless(value.isArray(), localizable("this must be a list of entries"));
    }
    return {};
}

// Of a key's own value, not of what is in it. Only an entry's type must be there.
Breach breachOf(std::span<const ValueRule> rules, const PropertyList& dictionary) {
    for (const ValueRule& rule : rules) {
        const PropertyList& value = dictionary[rule.key];
        if (!value && rule.form != ValueForm::EntryType) continue;
        if (std::string_view reason = complaintAbout(rule.form, value); !reason.empty())
            return {std::string(rule.key), reason};
    }
    return {};
}

}  // namespace

std::span<const ValueRule> domainRules() { return kDomainRules; }
std::span<const ValueRule> entryRules() { return kEntryRules; }
std::span<const std::string_view> entryTypes() { return kTypes; }

std::span<const ValueRule> optionRules() {
    static const std::vector<ValueRule> sRules = [] {
        std::vector<ValueRule> rules;
        std::ranges::transform(options(), std::back_inserter(rules), ruleOf);
        return rules;
    }();
    return sRules;
}

std::string placeInList(std::string_view listKey, std::size_t index, std::string_view placeInEntry) {
    return propertylist::formatted("%@[%d]%@%@", {listKey, index, placeInEntry.empty() ? "" : ".", placeInEntry});
}

Breach firstBreachOfEntry(const PropertyList& entry) {
    if (!entry.isDictionary()) return {{}, localizable("this is no entry")};
    if (Breach breach = breachOf(kEntryRules, entry)) return breach;
    if (hasType(entry, kRegExType) && entry[kDataKey].isData()) return {std::string(kDataKey), kMustBeText};
    Breach breach = breachOf(optionRules(), entry[kSettingsKey]);
    if (breach) breach.place.insert(0, std::string(kSettingsKey) + ".");
    return breach;
}

Breach firstBreach(const PropertyList& domain) {
    std::size_t index = 0;
    if (Breach breach = breachOf(kDomainRules, domain)) return breach;
    for (const PropertyList& entry : domain[kEntryListKey].elements()) {
        if (const Breach breach = firstBreachOfEntry(entry))
            return {placeInList(kEntryListKey, index, breach.place), breach.reason};
        ++index;
    }
    return {};
}

}  // namespace settings
