#include "entrylist/DifferenceWords.h"

#include "entrylist/Differences.h"
#include "propertylist/Format.h"
#include "settings/EntryList.h"

using platform::PropertyList;
using namespace settings;

namespace entrylist {

std::string differenceInWords(const PropertyList& mine, const PropertyList& theirs, const EntryWords& words) {
    if (mine == theirs) return {};
    std::string all;
    auto tell = [&](const std::string& what, const std::string& before, const std::string& after) {
        all += propertylist::formatted("%@%@: %@ → %@", {all.empty() ? "" : "; ", what, before, after});
    };
    for (const Option& option : options()) {
        if (!differs(mine, theirs, option)) continue;
        auto shown = [&](const PropertyList& entry) {
            return words.value(option, shownValue(entry[kSettingsKey], option));
        };
        tell(words.option(option), shown(mine), shown(theirs));
    }
    if (mine[kNameKey] != theirs[kNameKey])
        tell(words.localized("Name"), std::string(mine[kNameKey].stringValue()),
             std::string(theirs[kNameKey].stringValue()));
    return all.empty() ? words.localized("Other details") : all;
}

}  // namespace entrylist
