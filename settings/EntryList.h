// The ordered entry list "TheExcList": its keys, its kinds of entry, and the rule that the Global entry stands first.
#pragma once

#include "platform/PlatformTypes.h"

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace settings {

inline constexpr std::string_view kSettingsDomain = "com.tarnwick.typeslate";
// The object of the notification that tells of a saved change of the list or of "Disabled"; its name is the domain's.
inline constexpr std::string_view kPrefsChanged = "PrefsChanged";

// Keys of the settings domain.
inline constexpr std::string_view kEntryListKey = "TheExcList";  // array of entries
inline constexpr std::string_view kDisabledKey = "Disabled";     // boolean: the module does nothing anywhere
inline constexpr std::string_view kLogStuffKey = "Log Stuff";    // boolean: diagnostic lines are logged
inline constexpr std::string_view kDontShowLogSheetKey = "Don't Show Log Stuff Sheet";  // boolean

// Keys of an entry, a dictionary; every entry has "Type", "Name" and "Settings". All values are strings but those of
// the last two keys, and what is no UTF-8 under "Data", "Identifier", "Creator" and "Path" (see keptBytes). What others
// have stored may lack any of them, or have them of another type.
inline constexpr std::string_view kTypeKey = "Type";
inline constexpr std::string_view kNameKey = "Name";
inline constexpr std::string_view kDataKey = "Data";  // what the entry matches; all but Global
inline constexpr std::string_view kIdentifierKey = "Identifier";
inline constexpr std::string_view kCreatorKey = "Creator";
inline constexpr std::string_view kPathKey = "Path";             // when it was added
inline constexpr std::string_view kRegExTypeKey = "RegEx Type";  // integer: the kind of match, from 0
inline constexpr std::string_view kSettingsKey = "Settings";     // dictionary: the options of SettingsSchema.h

// The item of a pop-up menu that a stored number stands for; -1, which is no item, for what no menu can have.
int menuItem(std::int64_t stored);

// What an expression of a kind is held against: one of three texts that whatever stands for an application has. Null
// for a number that is no kind.
template <typename Application>
constexpr auto factOfKind(std::int64_t kind) {
    constexpr std::array kFacts{&Application::name, &Application::identifier, &Application::path};
    return kind >= 0 && kind < std::ssize(kFacts) ? kFacts[static_cast<std::size_t>(kind)] : nullptr;
}

// Values of "Type".
inline constexpr std::string_view kGlobalType = "Global";
inline constexpr std::string_view kIdentifierType = "Identifier";
inline constexpr std::string_view kCreatorType = "Creator";
inline constexpr std::string_view kPathType = "Path";
inline constexpr std::string_view kRegExType = "RegEx";

// False for what is no entry: another value than a dictionary, or one without a type.
bool hasType(const platform::PropertyList& entry, std::string_view type);

// Bytes as an entry keeps them, whatever they are: a string where they are UTF-8, else data.
platform::PropertyList keptBytes(std::string_view bytes);
// What was kept, a part of `value`; empty for a value of any other type.
std::string_view bytesKept(const platform::PropertyList& value);

// With those settings that the table of options gives a new Global entry.
platform::PropertyList newGlobalEntry();

// Moves the first Global entry to the front, or appends a new one at the END of a list that has none: an empty list is
// then in order at once, any other after the next call. False when the list was in order already.
bool putGlobalFirst(std::vector<platform::PropertyList>& list);

// What makes an entry the one that it is, wherever it stands and whatever becomes of its other keys: its "Type" and its
// "Data"; of a Global entry the type alone, and of what is no entry all of it.
class EntryIdentity {
public:
    EntryIdentity() = default;  // of no entry: it is in no list
    EntryIdentity(platform::PropertyList entry, std::size_t row) : entry_(std::move(entry)), row_(row) {}

    // The row of the entry. Of several alike it is the one at the row where the entry stood, else the nearest to it.
    std::optional<std::size_t> find(std::span<const platform::PropertyList> list) const;
    const platform::PropertyList& entry() const { return entry_; }  // as it was

private:
    bool isSame(const platform::PropertyList& other) const;

    platform::PropertyList entry_;
    std::size_t row_ = 0;
};

}  // namespace settings
