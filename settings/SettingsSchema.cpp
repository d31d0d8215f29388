#include "settings/SettingsSchema.h"

#include <algorithm>
#include <array>

using platform::PropertyList;

namespace settings {
namespace {

constexpr auto kBoolean = OptionType::Boolean;
constexpr auto kInteger = OptionType::Integer;
constexpr std::nullopt_t kAbsent = std::nullopt;

constexpr std::array<Option, 16> kOptions{{
    {"Enabled", kBoolean, 1, "perAppEnabled", 1, 0},
    {"CheckMenuItems", kBoolean, 12, "perAppCheckItems", kAbsent, 0},
    {"ShowFontInFace", kBoolean, 2, "perAppShowFace", 1, 0},
    {"DupeHandling", kInteger, 11, "perAppDupeHandling", 1, 0},
    {"ShowSets", kBoolean, 3, "perAppShowSets", 1, 0},
    {"ChangeSize", kBoolean, 4, "perAppShowSize", kAbsent, 0},
    {"FontSize", kInteger, 5, "perAppFontSize", kAbsent, 0},
    {"ShowIcons", kBoolean, 6, "perAppShowIcons", 1, 0},
    {"HierarchicalMenu", kBoolean, 7, "perAppHierarchicalMenu", 1, 0},
    {"AllFontsGroup", kBoolean, 13, "perAppShowAllSet", 1, 0},
    {"ScriptSort", kBoolean, 14, "perAppSortByScript", 0, 0},
    {"IncludeFAPSets", kBoolean, 15, "perAppIncludeFAPSets", kAbsent, 1},
    {"IncludeFEXSets", kBoolean, 17, "perAppIncludeFEXSets", kAbsent, 1},
    {"IncludeSuitcaseSets", kBoolean, 18, "perAppIncludeSuitcaseSets", kAbsent, 1},
    {"GenerateInactivePreview", kBoolean, 16, "perAppGenerateInactivePreview", kAbsent, 1},
    {"ModifyFontPanel", kBoolean, 19, "perAppModifyFontPanel", kAbsent, 1},
}};

// Tags of controls that choose one way of handling duplicates: the first stores 0, the next 1, and so on.
constexpr int kFirstDupeTag = 8;
constexpr int kLastDupeTag = 10;
constexpr int kDupeMenuTag = 11;

constexpr std::array kRefreshingTags{1, 2, 15, 17, 18};

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
    if (tag >= kFirstDupeTag && tag <= kLastDupeTag) return OptionChange{"DupeHandling", tag - kFirstDupeTag};
    auto option = std::ranges::find(kOptions, tag, &Option::tag);
    if (option == kOptions.end()) return std::nullopt;
    if (tag == kDupeMenuTag) return OptionChange{option->key, values.selectedRow};
    return OptionChange{
        option->key, option->type == OptionType::Boolean ? PropertyList(values.state) : PropertyList(values.integer)};
}

bool refreshesOtherControls(int tag) { return std::ranges::find(kRefreshingTags, tag) != kRefreshingTags.end(); }

std::int64_t shownValue(const PropertyList& settings, const Option& option) {
    const PropertyList& stored = settings[option.key];
    if (!stored) return option.shownWhenMissing;
    return option.type == OptionType::Boolean ? stored.boolValue() : stored.integerValue();
}

}  // namespace settings
