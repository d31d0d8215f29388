#include "entrylist/Differences.h"

#include "settings/EntryList.h"

#include <algorithm>

using platform::MutableDictionary;
using platform::PropertyList;
using namespace settings;

namespace entrylist {

bool differs(const PropertyList& entry, const PropertyList& global, const Option& option) {
    return shownValue(entry[kSettingsKey], option) != shownValue(global[kSettingsKey], option);
}

bool differs(const PropertyList& entry, const PropertyList& global) {
    return std::ranges::any_of(options(), [&](const Option& option) { return differs(entry, global, option); });
}

PropertyList withOptionsOf(const PropertyList& entry, const PropertyList& other, std::span<const Option> options) {
    MutableDictionary changed(entry), values(entry[kSettingsKey]);
    for (const Option& option : options) values.set(option.key, other[kSettingsKey][option.key]);
    changed.set(kSettingsKey, std::move(values).freeze());
    return std::move(changed).freeze();
}

}  // namespace entrylist
