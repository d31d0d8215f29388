#include "settings/SettingsSchema.h"

#include <algorithm>
#include <array>

using platform::PropertyList;

namespace settings {
namespace {

constexpr auto kBoolean = OptionType::Boolean;
constexpr auto kInteger = OptionType::Integer;
constexpr auto kChoice = OptionType::Choice;
constexpr std::nullopt_t kAbsent = std::nullopt;
constexpr bool kRefreshes = true, kAlone = false;

// clang-format off
constexpr std::array<Option, 16> kOptions{{
    {"Enabled", kBoolean, 1, 0, 1, "perAppEnabled", kRefreshes, EnabledWhile::MasterOn, SetSource::None},
    {"CheckMenuItems", kBoolean, kAbsent, 0, 12, "perAppCheckItems", kAlone, EnabledWhile::EntryEnabled, SetSource::None},
    {"ShowFontInFace", kBoolean, 1, 0, 2, "perAppShowFace", kRefreshes, EnabledWhile::EntryEnabled, SetSource::None},
    {"DupeHandling", kChoice, 1, 0, 11, "perAppDupeHandling", kAlone, EnabledWhile::EntryEnabled, SetSource::None},
    {"ShowSets", kBoolean, 1, 0, 3, "perAppShowSets", kAlone, EnabledWhile::EntryEnabled, SetSource::None},
    {"ChangeSize", kBoolean, kAbsent, 0, 4, "perAppShowSize", kAlone, EnabledWhile::EntryEnabled, SetSource::None},
    {"FontSize", kInteger, kAbsent, 0, 5, "perAppFontSize", kAlone, EnabledWhile::SizeChanges, SetSource::None},
    {"ShowIcons", kBoolean, 1, 0, 6, "perAppShowIcons", kAlone, EnabledWhile::EntryEnabled, SetSource::None},
    {"HierarchicalMenu", kBoolean, 1, 0, 7, "perAppHierarchicalMenu", kAlone, EnabledWhile::EntryEnabled, SetSource::None},
    {"AllFontsGroup", kBoolean, 1, 0, 13, "perAppShowAllSet", kAlone, EnabledWhile::EntryEnabled, SetSource::None},
    {"ScriptSort", kBoolean, 0, 0, 14, "perAppSortByScript", kAlone, EnabledWhile::EntryEnabled, SetSource::None},
    {"IncludeFAPSets", kBoolean, kAbsent, 1, 15, "perAppIncludeFAPSets", kRefreshes, EnabledWhile::EntryEnabled, SetSource::FontAgentPro},
    {"IncludeFEXSets", kBoolean, kAbsent, 1, 17, "perAppIncludeFEXSets", kRefreshes, EnabledWhile::EntryEnabled, SetSource::FontExplorerX},
    {"IncludeSuitcaseSets", kBoolean, kAbsent, 1, 18, "perAppIncludeSuitcaseSets", kRefreshes, EnabledWhile::EntryEnabled, SetSource::Suitcase},
    {"GenerateInactivePreview", kBoolean, kAbsent, 1, 16, "perAppGenerateInactivePreview", kAlone, EnabledWhile::SetsInOwnFaces, SetSource::None},
    {"ModifyFontPanel", kBoolean, kAbsent, 1, 19, "perAppModifyFontPanel", kAlone, EnabledWhile::EntryEnabled, SetSource::None},
}};
// clang-format on

// Tags of controls that choose one way of handling duplicates: the first stores 0, the next 1, and so on.
constexpr int kFirstDupeTag = 8;
constexpr int kLastDupeTag = 10;
constexpr std::int64_t kDupeWays = kLastDupeTag - kFirstDupeTag + 1;

PropertyList valueOfControl(const Option& option, const ControlValues& values) {
    switch (option.type) {
        case OptionType::Boolean:
            return values.state;
        case OptionType::Integer:
            return values.integer;
        case OptionType::Choice:
            return values.selectedRow;
    }
    return {};
}

}  // namespace

std::span<const Option> options() { return kOptions; }

const Option* optionForKey(std::string_view key) {
    auto found = std::ranges::find(kOptions, key, &Option::key);
    return found == kOptions.end() ? nullptr : &*found;
}

PropertyList optionValue(const Option& option, std::int64_t value) {
    return option.type == OptionType::Boolean ? PropertyList(value != 0) : PropertyList(value);
}

std::optional<OptionChange> optionChangeForTag(int tag, const ControlValues& values) {
    if (tag >= kFirstDupeTag && tag <= kLastDupeTag)
        return OptionChange{optionForKey("DupeHandling"), tag - kFirstDupeTag};
    auto option = std::ranges::find(kOptions, tag, &Option::tag);
    if (option == kOptions.end()) return std::nullopt;
    return OptionChange{&*option, valueOfControl(*option, values)};
}

std::int64_t shownValue(const PropertyList& settings, const Option& option) {
    const PropertyList& stored = settings[option.key];
    if (!stored) return option.shownWhenMissing;
    return option.type == OptionType::Boolean ? stored.boolValue() : stored.integerValue();
}

int appliedValue(const PropertyList& settings, const Option& option) {
    const std::int64_t value = shownValue(settings, option);
    switch (option.type) {
        case OptionType::Boolean:
            return value != 0;
        case OptionType::Integer:
            return static_cast<int>(std::clamp<std::int64_t>(value, 0, kLargestFontSize));
        case OptionType::Choice:
            return value < 0 || value >= kDupeWays ? 0 : static_cast<int>(value);
    }
    return 0;
}

}  // namespace settings
