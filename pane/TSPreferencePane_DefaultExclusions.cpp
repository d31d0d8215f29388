// Merging the shipped exclusions, once for each of their versions.
#include "pane/TSPreferencePane.h"

#include "propertylist/Codec.h"
#include "settings/DefaultExclusions.h"
#include "settings/EntryList.h"

using namespace platform;
using namespace propertylist;
using namespace settings;

void TSPreferencePane::addDefaultExclusionsToTS() {
    bool isMerged = prefs->integerForKey(kAddedDefaultExclusionsKey) != 0;
    if (isMerged && prefs->integerForKey(kDefaultExclusionsVersionKey) >= kDefaultExclusionsVersion) return;
    // What cannot be read must not be replaced by the shipped list alone.
    if (!prefs->isReadable()) return;

    auto path = thisBundle.resourcePath("Exclusions", "plist");
    auto bytes = path ? platform_.files.readFile(*path) : nullptr;
    PropertyList shipped = bytes ? decodePropertyList(std::move(bytes)) : PropertyList();
    std::vector<PropertyList> list = mutableArray(entryList());
    mergeExclusions(list, shipped);
    prefs->setObject_forKey(PropertyList::array(std::move(list)), kEntryListKey);
    prefs->setBool_forKey(true, kAddedDefaultExclusionsKey);
    prefs->setInteger_forKey(kDefaultExclusionsVersion, kDefaultExclusionsVersionKey);
}
