// The entry list as text, and options from text.
#pragma once

#include "platform/PlatformTypes.h"
#include "settings/SettingsSchema.h"
#include "tools/Refusal.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

// A table for people: a header, then one line for each entry, whatever its texts contain.
std::string entryTable(const std::vector<platform::PropertyList>& list);

// The refusal of an index outside a list of that many entries.
Refusal noEntry(int index, std::size_t count);

// The value that the text stands for: true, yes, on or 1 and false, no, off or 0 in any case for a switch, else a
// number that the option can have. Nothing for any other text.
std::optional<std::int64_t> optionValueFromText(const settings::Option& option, std::string_view text);
// "true or false", "0 to 255".
std::string acceptedValues(const settings::Option& option);

}  // namespace tools
