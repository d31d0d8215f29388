#include "settings/EntryList.h"

#include "settings/SettingsSchema.h"

#include <algorithm>

using platform::MutableDictionary;
using platform::PropertyList;

namespace settings {
namespace {

bool isGlobal(const PropertyList& entry) { return hasType(entry, kGlobalType); }

PropertyList newGlobalSettings() {
    MutableDictionary values;
    for (const Option& option : options())
        if (option.newGlobal) values.set(option.key, optionValue(option, *option.newGlobal));
    return std::move(values).freeze();
}

}  // namespace

bool hasType(const PropertyList& entry, std::string_view type) { return entry[kTypeKey].stringValue() == type; }

PropertyList newGlobalEntry() {
    return PropertyList::dictionary(
        {{kNameKey, "Global"}, {kTypeKey, kGlobalType}, {kSettingsKey, newGlobalSettings()}});
}

bool putGlobalFirst(std::vector<PropertyList>& list) {
    if (!list.empty() && isGlobal(list.front())) return false;
    auto global = std::ranges::find_if(list, isGlobal);
    if (global != list.end())
        std::rotate(list.begin(), global, global + 1);
    else
        list.push_back(newGlobalEntry());
    return true;
}

}  // namespace settings
