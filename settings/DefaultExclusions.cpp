#include "settings/DefaultExclusions.h"

#include "settings/EntryList.h"

using platform::PropertyList;

namespace settings {
namespace {

bool isSameTarget(const PropertyList& entry, const PropertyList& shipped) {
    auto isSameText = [&](std::string_view key) { return shipped[key].isString() && entry[key] == shipped[key]; };
    return isSameText(kTypeKey) && isSameText(kDataKey);
}

// Deliberately, it is the shipped entry's own index that is held against the length of the shortened list, not the
// place of the one replaced: where that index is greater, the replacement goes to the end.
void replaceAt(std::vector<PropertyList>& list, std::size_t position, const PropertyList& shipped,
               std::size_t shippedIndex) {
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(position));
    bool atPosition = shippedIndex <= list.size();
    list.insert(atPosition ? list.begin() + static_cast<std::ptrdiff_t>(position) : list.end(), shipped);
}

}  // namespace

void mergeExclusions(std::vector<PropertyList>& list, const PropertyList& shipped) {
    for (std::size_t i = 0; i < shipped.size(); ++i) {
        const PropertyList& entry = shipped[i];
        if (!entry.isDictionary()) continue;
        bool isFound = false;
        for (std::size_t j = 0; j < list.size(); ++j) {
            if (!isSameTarget(list[j], entry)) continue;
            isFound = true;
            replaceAt(list, j, entry, i);
        }
        if (!isFound) list.push_back(entry);
    }
}

}  // namespace settings
