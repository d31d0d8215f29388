// The sixteen font-menu options of an entry's "Settings". Whatever shows, changes or lists options reads this table.
#pragma once

#include "platform/PlatformTypes.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace settings {

enum class OptionType { Boolean, Integer };

struct Option {
    std::string_view key;
    OptionType type;
    int tag;                                // of the control that writes it
    std::string_view outlet;                // that control's name in the interface file
    std::optional<std::int64_t> newGlobal;  // the value in a new Global entry; absent: not stored there
    std::int64_t shownWhenMissing;          // never stored by itself
};

// In the order in which a new Global entry stores its keys.
std::span<const Option> options();
// Null for an unknown key.
const Option* optionForKey(std::string_view key);

// The values that an action reads from its sender.
struct ControlValues {
    bool state = false;
    std::int64_t integer = 0;
    int selectedRow = -1;
};
struct OptionChange {
    std::string_view key;
    platform::PropertyList value;
};
// What a control with this tag stores; nothing for an unknown tag. Besides the options' own tags there are three that
// store a fixed "DupeHandling".
std::optional<OptionChange> optionChangeForTag(int tag, const ControlValues& values);

// True for the options on which the enabled state or the display of other controls depends.
bool refreshesOtherControls(int tag);

// The option's value as readers take it: a boolean as 0 or 1, the display default when it is missing.
std::int64_t shownValue(const platform::PropertyList& settings, const Option& option);

// The property-list value of an option's type.
platform::PropertyList optionValue(const Option& option, std::int64_t value);

}  // namespace settings
