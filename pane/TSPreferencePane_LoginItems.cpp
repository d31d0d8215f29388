// The user's login items, in the login window's own domain. Each operation reads the whole array, changes it and
// stores it whole; what another program stores between the read and the write is lost.
#include "pane/TSPreferencePane.h"

#include "platform/LoginItems.h"

#include <algorithm>

using namespace platform;

namespace {

PropertyList storedItems(PreferenceService& preferences) {
    return preferences.copyValue(kLoginItemsKey, kLoginWindowDomain);
}

void storeItems(PreferenceService& preferences, std::vector<PropertyList> items) {
    // While the stored items cannot be read they are unknown, not none.
    if (!preferences.isReadable(kLoginWindowDomain)) return;
    preferences.setValue(kLoginItemsKey, PropertyList::array(std::move(items)), kLoginWindowDomain);
    preferences.synchronize(kLoginWindowDomain);
}

std::string_view pathOf(const PropertyList& item) { return item[kLoginItemPathKey].stringValue(); }

bool isApplication(BundleServices& bundles, const PropertyList& item, std::string_view identifier) {
    if (!pathOf(item).starts_with('/') || identifier.empty()) return false;
    std::unique_ptr<Bundle> bundle = bundles.openBundle(pathOf(item));
    return bundle && bundle->identifier() == identifier;
}

template <typename Condition>
void removeItems(PreferenceService& preferences, Condition isUnwanted) {
    std::vector<PropertyList> items = mutableArray(storedItems(preferences));
    for (auto item = items.end(); item != items.begin();)
        if (isUnwanted(*--item)) item = items.erase(item);
    storeItems(preferences, std::move(items));
}

}  // namespace

void TSPreferencePane::addLoginItem_hide(std::optional<std::string_view> path, bool hide) {
    if (!path) return;
    std::vector<PropertyList> items = mutableArray(storedItems(platform_.preferences));
    items.push_back(PropertyList::dictionary({{kLoginItemPathKey, *path}, {kLoginItemHideKey, hide}}));
    storeItems(platform_.preferences, std::move(items));
}

void TSPreferencePane::removeLoginItem(std::optional<std::string_view> identifier) {
    if (!identifier) return;
    removeItems(platform_.preferences,
                [&](const PropertyList& item) { return isApplication(platform_.bundles, item, *identifier); });
}

void TSPreferencePane::removeLoginItemWithPath(std::optional<std::string_view> path) {
    if (!path) return;
    removeItems(platform_.preferences,
                [&](const PropertyList& item) { return item[kLoginItemPathKey].isString() && pathOf(item) == *path; });
}

bool TSPreferencePane::isLoginItem_withPath(std::optional<std::string_view> identifier,
                                            std::optional<std::string_view> path) {
    PropertyList items = storedItems(platform_.preferences);
    if (!identifier || !items.isArray()) return false;
    auto all = items.elements();
    auto found = std::find_if(all.rbegin(), all.rend(), [&](const PropertyList& item) {
        return isApplication(platform_.bundles, item, *identifier);
    });
    if (found == all.rend()) return false;
    if (pathOf(*found) == path) return true;
    platform_.log("[Quirklet Doctor] Login item %@ found, but not in sync, repairing (was:%@, now:%@)", *identifier,
                  (*found)[kLoginItemPathKey], path ? FormatArgument(*path) : FormatArgument(nullptr));
    bool hide = (*found)[kLoginItemHideKey].boolValue();
    removeLoginItem(identifier);
    addLoginItem_hide(path, hide);
    return true;
}
