#include "settings/ApplicationEntry.h"

#include "settings/EntryList.h"

#include <cstring>

using platform::MutableDictionary;
using platform::PropertyList;

namespace settings {
namespace {

bool hasCreator(const ApplicationIdentity& application) {
    return !application.creator.empty() && application.creator != kNoCreator;
}

}  // namespace

std::string creatorText(std::uint32_t code) {
    char bytes[sizeof code + 1] = {};
    std::memcpy(bytes, &code, sizeof code);
    return bytes;
}

PropertyList applicationEntry(const ApplicationIdentity& application, const PropertyList& entrySettings) {
    MutableDictionary entry;
    entry.set(kNameKey, application.displayName);
    entry.set(kPathKey, keptBytes(application.path));
    if (application.bundleIdentifier) entry.set(kIdentifierKey, keptBytes(*application.bundleIdentifier));
    if (hasCreator(application)) entry.set(kCreatorKey, keptBytes(application.creator));
    if (application.bundleIdentifier) {
        entry.set(kTypeKey, kIdentifierType);
        entry.set(kDataKey, keptBytes(*application.bundleIdentifier));
    } else if (hasCreator(application)) {
        entry.set(kTypeKey, kCreatorType);
        entry.set(kDataKey, keptBytes(application.creator));
    } else {
        entry.set(kTypeKey, kPathType);
        entry.set(kDataKey, keptBytes(application.path));
    }
    entry.set(kSettingsKey, entrySettings);
    return std::move(entry).freeze();
}

ApplicationIndex::ApplicationIndex(std::span<const PropertyList> list) {
    for (const PropertyList& entry : list) add(entry);
}

void ApplicationIndex::add(const PropertyList& entry) {
    std::string_view data = bytesKept(entry[kDataKey]);
    if (hasType(entry, kIdentifierType))
        identifiers_.emplace(data);
    else if (hasType(entry, kCreatorType))
        creators_.emplace(data);
    else if (hasType(entry, kPathType))
        paths_.emplace(data);
}

bool ApplicationIndex::contains(const ApplicationIdentity& application) const {
    return (application.bundleIdentifier && identifiers_.contains(*application.bundleIdentifier)) ||
           creators_.contains(application.creator) || paths_.contains(application.path);
}

// A list without a Global entry gets one only for the sake of the settings: each look repairs it further.
std::vector<bool> addApplications(std::vector<PropertyList>& list, const std::vector<ApplicationIdentity>& applications,
                                  const PropertyList& entrySettings) {
    std::vector<PropertyList> repaired = list;
    ApplicationIndex index(list);
    std::vector<bool> wereAdded;
    for (const ApplicationIdentity& application : applications) {
        wereAdded.push_back(!index.contains(application));
        if (!wereAdded.back()) continue;
        putGlobalFirst(repaired);
        const PropertyList& usual = repaired.front()[kSettingsKey];
        list.push_back(applicationEntry(application, entrySettings ? entrySettings : usual));
        index.add(list.back());
    }
    return wereAdded;
}

}  // namespace settings
