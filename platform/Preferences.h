// The preference service: per-user domains of keys and property-list values that several processes share.
//
// A domain is read into memory at its first use. Getters and setters work on that copy: a value that was set is visible
// to this process at once, to others after `synchronize`, which also takes in what others have written since.
// Not for use from several threads at once; separate services, in one process or many, may share a domain.
#pragma once

#include "platform/PlatformTypes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class PreferenceService {
public:
    virtual ~PreferenceService() = default;

    // Nothing when the key is missing; while the domain cannot be read, for every key but those set in it since.
    virtual PropertyList copyValue(std::string_view key, std::string_view domain) = 0;
    // The whole domain, its keys in stored order; empty when there is none.
    virtual PropertyList copyDomain(std::string_view domain) = 0;
    // Nothing as value removes the key.
    virtual void setValue(std::string_view key, PropertyList value, std::string_view domain) = 0;

    // Writes this process's changes and takes in those of others. True when everything set so far is on the disk and
    // flushed. On failure the stored domain is what it was, the changes stay in memory, and the reason is logged.
    virtual bool synchronize(std::string_view domain) = 0;

    // False while the stored domain exists but cannot be read: "nothing is stored" and "nobody knows what is stored"
    // ask for different deeds. A domain that could not be read is tried again here.
    virtual bool isReadable(std::string_view domain) = 0;

    // The names of all stored domains that hold a key, or may hold one, sorted. Nothing when there may be some that
    // cannot be listed, for a reason that is logged.
    virtual std::optional<std::vector<std::string>> domains() = 0;

    // What the platform's boolean and integer reads accept; false and 0 otherwise.
    bool getBooleanValue(std::string_view key, std::string_view domain) {
        return propertylist::coercedBoolean(copyValue(key, domain));
    }
    std::int64_t getIntegerValue(std::string_view key, std::string_view domain) {
        return propertylist::coercedInteger(copyValue(key, domain));
    }
};

}  // namespace platform
