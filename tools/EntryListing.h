// The entry list as text, and options from text.
#pragma once

#include "entrylist/EntryAddress.h"
#include "platform/PlatformTypes.h"
#include "settings/SettingsSchema.h"
#include "tools/Refusal.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

// A table for people: a header, then one line for each entry, whatever its texts contain.
std::string entryTable(const std::vector<platform::PropertyList>& list);

// The list as the pane would show it, the Global entry first.
std::vector<platform::PropertyList> repairedList(const platform::PropertyList& stored);

// The row of the one entry that the address names in the list. Throws Refusal when there is none, or several.
std::size_t rowAt(const entrylist::EntryAddress& address, std::span<const platform::PropertyList> list);

// The value that the text stands for: true, yes, on or 1 and false, no, off or 0 for a switch, a word for an item of a
// menu, both in any case of letters, else a number that the option can have. Nothing for any other text.
std::optional<std::int64_t> optionValueFromText(const settings::Option& option, std::string_view text);
// "true or false", "0 to 255", in words.
std::string acceptedValues(const settings::Option& option);
// Texts that stand for values, as completions offer them; none for a number.
std::vector<std::string_view> valueWords(const settings::Option& option);

}  // namespace tools
