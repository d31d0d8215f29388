// The ordered entry list "TheExcList": its keys, its kinds of entry, and the rule that the Global entry stands first.
#pragma once

#include "platform/PlatformTypes.h"

#include <string_view>
#include <vector>

namespace settings {

inline constexpr std::string_view kSettingsDomain = "com.tarnwick.typeslate";

// Keys of the settings domain.
inline constexpr std::string_view kEntryListKey = "TheExcList";
inline constexpr std::string_view kDisabledKey = "Disabled";
inline constexpr std::string_view kLogStuffKey = "Log Stuff";

// Keys of an entry, a dictionary; every entry has "Type", "Name" and "Settings".
inline constexpr std::string_view kTypeKey = "Type";
inline constexpr std::string_view kNameKey = "Name";
inline constexpr std::string_view kDataKey = "Data";  // what the entry matches; all but Global
inline constexpr std::string_view kIdentifierKey = "Identifier";
inline constexpr std::string_view kCreatorKey = "Creator";
inline constexpr std::string_view kPathKey = "Path";
inline constexpr std::string_view kRegExTypeKey = "RegEx Type";  // index of the kind of match
inline constexpr std::string_view kSettingsKey = "Settings";

// Values of "Type".
inline constexpr std::string_view kGlobalType = "Global";
inline constexpr std::string_view kIdentifierType = "Identifier";
inline constexpr std::string_view kCreatorType = "Creator";
inline constexpr std::string_view kPathType = "Path";
inline constexpr std::string_view kRegExType = "RegEx";

bool hasType(const platform::PropertyList& entry, std::string_view type);

platform::PropertyList newGlobalEntry();

// Moves the first Global entry to the front, or appends a new one at the END of a list that has none: an empty list is
// then in order at once, any other after the next call. False when the list was in order already.
bool putGlobalFirst(std::vector<platform::PropertyList>& list);

}  // namespace settings
