// Merging the shipped exclusions, once for each of their versions.
#include "pane/TSPreferencePane.h"

#include "propertylist/Codec.h"
#include "settings/DefaultExclusions.h"
#include "settings/EntryList.h"

using namespace platform;
using namespace propertylist;
using namespace settings;

namespace {

bool isMerged(const PropertyList& added, const PropertyList& version) {
    return coercedInteger(added) != 0 && coercedInteger(version) >= kDefaultExclusionsVersion;
}

}  // namespace

void TSPreferencePane::addDefaultExclusionsToTS() {
    if (isMerged(prefs->objectForKey(kAddedDefaultExclusionsKey), prefs->objectForKey(kDefaultExclusionsVersionKey)))
        return;
    // What cannot be read must not be replaced by the shipped list alone.
    if (!prefs->isReadable()) return;

    auto path = thisBundle.resourcePath("Exclusions", "plist");
    auto bytes = path ? platform_.files.readFile(*path) : nullptr;
    PropertyList shipped = bytes ? decodePropertyList(std::move(bytes)) : PropertyList();
    prefs->changeValues([shipped](MutableDictionary& values) {
        // Another window may have merged them, and the user changed them since.
        if (isMerged(values[kAddedDefaultExclusionsKey], values[kDefaultExclusionsVersionKey])) return;
        List list = mutableArray(values[kEntryListKey]);
        mergeExclusions(list, shipped);
        values.set(kEntryListKey, PropertyList::array(std::move(list)));
        values.set(kAddedDefaultExclusionsKey, true);
        values.set(kDefaultExclusionsVersionKey, kDefaultExclusionsVersion);
    });
}
