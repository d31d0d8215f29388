#include "settings/EntryList.h"

#include "settings/SettingsSchema.h"

#include <algorithm>
#include <utility>

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

PropertyList keptBytes(std::string_view bytes) {
    PropertyList text(bytes);
    return text ? text : PropertyList::data(bytes);
}

std::string_view bytesKept(const PropertyList& value) {
    return value.isString() ? value.stringValue() : value.dataValue();
}

int menuItem(std::int64_t stored) { return std::in_range<int>(stored) ? static_cast<int>(stored) : -1; }

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

bool EntryIdentity::isSame(const PropertyList& other) const {
    if (!entry_.isDictionary() || !entry_[kTypeKey]) return entry_ && other == entry_;
    return other[kTypeKey] == entry_[kTypeKey] && (isGlobal(entry_) || other[kDataKey] == entry_[kDataKey]);
}

std::optional<std::size_t> EntryIdentity::find(std::span<const PropertyList> list) const {
    if (row_ < list.size() && isSame(list[row_])) return row_;
    std::optional<std::size_t> nearest;
    auto distance = [this](std::size_t row) { return row < row_ ? row_ - row : row - row_; };
    for (std::size_t row = 0; row < list.size(); ++row)
        if (isSame(list[row]) && (!nearest || distance(row) < distance(*nearest))) nearest = row;
    return nearest;
}

}  // namespace settings
