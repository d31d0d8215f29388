// The sixteen font-menu options of an entry's "Settings". Whatever shows, changes or lists options reads this table.
#pragma once

#include "platform/PlatformTypes.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace settings {

// How an option is stored and by what kind of control it is changed.
enum class OptionType {
    Boolean,  // a check box
    Integer,  // a number, 0 or more, in a text field
    Choice    // an integer: the index, from 0, of an item of a pop-up menu
};

// Whose font sets an option includes; such an option is shown and offered only while that font manager is installed.
enum class SetSource { None, FontAgentPro, FontExplorerX, Suitcase };

// When an option's control can be used. The master switch must be on for each.
enum class EnabledWhile {
    MasterOn,       // and nothing else
    EntryEnabled,   // the entry's own "Enabled" is on
    SizeChanges,    // "ChangeSize" is on, whatever "Enabled" says
    SetsInOwnFaces  // some set source's box is on and can be used, and "ShowFontInFace" is on
};

struct Option {
    std::string_view key;
    OptionType type;
    std::optional<std::int64_t> newGlobal;  // the value in a new Global entry; absent: not stored there
    std::int64_t shownWhenMissing;          // what the control shows then; it is stored only when the user changes it
    int tag;                                // of the control that writes it; one option's only
    std::string_view outlet;                // that control's name in the interface file
    bool refreshesOthers;                   // what other controls show, or whether they can be used, depends on it
    EnabledWhile enabledWhile;
    SetSource setSource;
};

inline constexpr std::int64_t kLargestFontSize = 255;             // that can be typed, from 0
inline constexpr std::string_view kChangeSizeKey = "ChangeSize";  // the control that enables another by itself

// All of them, in the order in which a new Global entry stores its keys; an option whose control depends on another's
// comes behind that one. They live as long as the process.
std::span<const Option> options();
// Null for an unknown key.
const Option* optionForKey(std::string_view key);

// The values that an action reads from its sender; which of them counts depends on the option's type.
struct ControlValues {
    bool state = false;
    std::int64_t integer = 0;
    int selectedRow = -1;  // -1: none
};
struct OptionChange {
    const Option* option;  // never null
    platform::PropertyList value;
};
// What a control with this tag stores; nothing for an unknown tag. Besides the options' own tags there are three, 8 to
// 10, that store "DupeHandling" 0 to 2.
std::optional<OptionChange> optionChangeForTag(int tag, const ControlValues& values);

// The option's value as readers take it: a boolean as 0 or 1, the display default when it is missing. A value of
// another type than a number or a boolean counts as 0.
std::int64_t shownValue(const platform::PropertyList& settings, const Option& option);

// The same as menus are arranged by it: a number is at least 0 and at most kLargestFontSize, and a choice that the menu
// has not is its first.
int appliedValue(const platform::PropertyList& settings, const Option& option);

// The value as it is stored: a boolean (anything but 0 is true) or an integer, by the option's type.
platform::PropertyList optionValue(const Option& option, std::int64_t value);

}  // namespace settings
