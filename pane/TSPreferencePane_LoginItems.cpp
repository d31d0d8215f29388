// The user's login items, in the login window's own domain.
#include "pane/TSPreferencePane.h"

#include "platform/LoginItems.h"

#include <algorithm>

using namespace platform;

namespace {

PropertyList storedItems(PreferenceService& preferences) {
    return preferences.copyValue(kLoginItemsKey, kLoginWindowDomain);
}

// The function is a PreferenceChange of the items. While they cannot be read they are unknown, not none, and a value
// that is no array is somebody else's, and stays.
void changeItems(PreferenceService& preferences, std::function<void(std::vector<PropertyList>&)> change) {
    if (!preferences.isReadable(kLoginWindowDomain)) return;
    auto changeValues = [change = std::move(change)](MutableDictionary& values) {
        const PropertyList& stored = values[kLoginItemsKey];
        if (stored && !stored.isArray()) return;
        std::vector<PropertyList> items = mutableArray(stored);
        change(items);
        values.set(kLoginItemsKey, PropertyList::array(std::move(items)));
    };
    preferences.changeValues(std::move(changeValues), kLoginWindowDomain);
    preferences.synchronize(kLoginWindowDomain);
}

std::string_view pathOf(const PropertyList& item) { return item[kLoginItemPathKey].stringValue(); }

// An application need not be a bundle.
bool isApplication(const Platform& platform, const PropertyList& item, std::string_view identifier) {
    if (!pathOf(item).starts_with('/') || identifier.empty()) return false;
    std::unique_ptr<Bundle> bundle = platform.bundles.openBundle(pathOf(item));
    return bundle ? bundle->identifier() == identifier
                  : platform.applications.bundleIdentifier(pathOf(item)) == identifier;
}

using Condition = std::function<bool(const PropertyList& item)>;

void removeItems(PreferenceService& preferences, Condition isUnwanted) {
    changeItems(preferences, [isUnwanted = std::move(isUnwanted)](std::vector<PropertyList>& items) {
        for (auto item = items.end(); item != items.begin();)
            if (isUnwanted(*--item)) item = items.erase(item);
    });
}

}  // namespace

void TSPreferencePane::addLoginItem_hide(std::optional<std::string_view> path, bool hide) {
    if (!path) return;
    PropertyList item = PropertyList::dictionary({{kLoginItemPathKey, *path}, {kLoginItemHideKey, hide}});
    changeItems(platform_.preferences, [item](std::vector<PropertyList>& items) { items.push_back(item); });
}

void TSPreferencePane::removeLoginItem(std::optional<std::string_view> identifier) {
    if (!identifier) return;
    removeItems(platform_.preferences, [this, unwanted = std::string(*identifier)](const PropertyList& item) {
        return isApplication(platform_, item, unwanted);
    });
}

void TSPreferencePane::removeLoginItemWithPath(std::optional<std::string_view> path) {
    if (!path) return;
    removeItems(platform_.preferences, [unwanted = std::string(*path)](const PropertyList& item) {
        return item[kLoginItemPathKey].isString() && pathOf(item) == unwanted;
    });
}

bool TSPreferencePane::isLoginItem_withPath(std::optional<std::string_view> identifier,
                                            std::optional<std::string_view> path) {
    PropertyList items = storedItems(platform_.preferences);
    if (!identifier || !items.isArray()) return false;
    auto all = items.elements();
    auto found = std::find_if(all.rbegin(), all.rend(),
                              [&](const PropertyList& item) { return isApplication(platform_, item, *identifier); });
    if (found == all.rend()) return false;
    if (pathOf(*found) == path) return true;
    platform_.log("[Quirklet Doctor] Login item %@ found, but not in sync, repairing (was:%@, now:%@)", *identifier,
                  (*found)[kLoginItemPathKey], path ? FormatArgument(*path) : FormatArgument(nullptr));
    bool hide = (*found)[kLoginItemHideKey].boolValue();
    removeLoginItem(identifier);
    addLoginItem_hide(path, hide);
    return true;
}
