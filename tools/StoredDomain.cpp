#include "tools/StoredDomain.h"

#include "linux/texts/DisplayText.h"
#include "pane/fontcatalog/AdobeNames.h"
#include "platform/LoginItems.h"
#include "settings/EntryList.h"
#include "tools/Localized.h"

using fontcatalog::kCacheDomain;
using platform::kLoginWindowDomain;
using settings::kSettingsDomain;

namespace tools {

linux::LockWait& lockWait() {
    static linux::LockWait sWait = linux::DiskPreferences::kPatience;
    return sWait;
}

// Some domains people know by what is in them.
void requireReadable(linux::DiskPreferences& preferences, std::string_view domain) {
    if (preferences.isReadable(domain)) return;
    std::string problem = linux::displayText(preferences.problem(domain));
    if (domain == kSettingsDomain) throw refused("the stored settings cannot be read: %@", problem);
    if (domain == kLoginWindowDomain) throw refused("the login items cannot be read: %@", problem);
    if (domain == kCacheDomain) throw refused("the stored catalogue cannot be read: %@", problem);
    throw refused("the domain %@ cannot be read: %@", linux::displayText(domain), problem);
}

void save(linux::DiskPreferences& preferences, std::string_view domain) {
    if (!preferences.synchronize(domain)) refuseUnsaved(preferences, domain);
}

void refuseUnsaved(linux::DiskPreferences& preferences, std::string_view domain) {
    std::string problem = linux::displayText(preferences.problem(domain));
    if (domain == kSettingsDomain) throw refused("the settings could not be written: %@", problem);
    if (domain == kLoginWindowDomain) throw refused("the login items could not be written: %@", problem);
    if (domain == kCacheDomain) throw refused("the catalogue could not be written: %@", problem);
    throw refused("the domain %@ could not be written: %@", linux::displayText(domain), problem);
}

}  // namespace tools
