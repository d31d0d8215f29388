// What the stored settings consist of: the keys of the domain, of an entry and of its options, what readers take under
// each, and what it means. What describes or checks them reads these tables; docs/settings.md tells the same in words.
//
// Keys that no table has are allowed everywhere, belong to whoever stored them, and are kept.
#pragma once

#include "platform/PlatformTypes.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace settings {

// More keys of the settings domain, whose names the update schedule shares (docs/updates.md).
inline constexpr std::string_view kCheckForUpdatesKey = "SUCheckForUpdates";            // boolean
inline constexpr std::string_view kCheckIntervalKey = "SUCheckInterval";                // number: seconds
inline constexpr std::string_view kLastCheckDateKey = "SULastCheckDate";                // date
inline constexpr std::string_view kLastRunSystemVersionKey = "SULastRunSystemVersion";  // integer
inline constexpr std::string_view kLastCheckStatusKey = "SULastCheckStatus";            // string

// What readers take under a key. A boolean and a number of either kind serve as one another everywhere.
enum class ValueForm : unsigned char {
    Boolean,
    Number,
    SpeltBoolean,  // or one of the texts true, yes, 1, false, no and 0, in any case of letters
    SpeltNumber,   // or one of these, or decimal digits, with a sign or without
    Date,
    Text,
    Bytes,      // text, or data for what is no UTF-8
    EntryType,  // one of entryTypes()
    Options,    // a dictionary of optionRules()
    EntryList,  // an array of entries
};

struct ValueRule {
    std::string_view key;
    ValueForm form;
    std::string_view meaning;                        // in English, for people
    std::optional<std::int64_t> whenMissing = {};    // what it counts as then, where that is a number or boolean
    std::span<const std::string_view> choices = {};  // of a menu, in English: the first stands for 0
    std::optional<std::int64_t> largestTyped = {};   // from 0
};
// Numbers that no choice stands for and that nobody can type are taken, and stay. All of it lives as long as the
// process.
std::span<const ValueRule> domainRules();
std::span<const ValueRule> entryRules();
std::span<const ValueRule> optionRules();  // in the order of options()
std::span<const std::string_view> entryTypes();

// A value of a type from which readers take nothing: to them it is missing, or 0.
struct Breach {
    std::string place = {};        // "TheExcList[3].Settings.FontSize", counted from 0
    std::string_view reason = {};  // in English, key of the localised strings; empty: there is none

    explicit operator bool() const { return !reason.empty(); }
};
// The first one, in the order of the rules and of the list. Takes time in proportion to the length of the list.
Breach firstBreach(const platform::PropertyList& domain);
// The same within one entry, the place counted from there: "Settings.FontSize", or empty for what is no entry at all.
Breach firstBreachOfEntry(const platform::PropertyList& entry);
// The place within an entry as one within what holds the list under that key.
std::string placeInList(std::string_view listKey, std::size_t index, std::string_view placeInEntry);

}  // namespace settings
