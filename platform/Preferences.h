// The preference service: per-user domains of keys and property-list values that several processes share.
//
// A domain is read into memory at its first use. Getters and setters work on that copy: a value that was set is visible
// to this process at once, to others after `synchronize`, which also takes in what others have written since.
//
// A transaction is a change and the synchronize that follows it. What is to be changed in a value that others change
// too, such as one element of a list, is told as a function of the stored values: synchronize hands it what is stored
// in the moment of saving, while it keeps every other program out, so that nothing is overwritten that was not seen.
// Not for use from several threads at once; separate services, in one process or many, may share a domain.
#pragma once

#include "platform/Notifications.h"
#include "platform/PlatformTypes.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Lays a change over the values of a domain. Called at the latest when a value is next asked for, with what is in
// memory, and again by each synchronize that finds other values stored, until one has saved it. So it owns what it
// needs, looks at nothing that another program may have changed but `values`, calls no preference service, and comes to
// the same end however often it was called before.
using PreferenceChange = std::function<void(MutableDictionary& values)>;

// How a domain in memory and the stored one stand to each other.
struct PreferenceReport {
    enum class Kind {
        Synchronized,  // they are the same
        NotSaved,      // what was changed is in memory only, and will be saved by a later synchronize
        Unreadable,    // the stored domain is there, but cannot be read
        MovedAside,    // the stored domain was damaged; it is now called `path`, and the domain starts empty
    };
    enum class Cause { Other, DiskFull, ReadOnly, NoPermission, Held };

    Kind kind = Kind::Synchronized;
    std::string domain;
    std::string path = {};       // of the file that it is about
    Cause cause = Cause::Other;  // of NotSaved and Unreadable
    std::string detail = {};     // the reason, for logs and for people who read logs; empty when synchronized
    std::string holder = {};     // Held: by this program; empty when that cannot be found out
    int holderProcess = 0;       // and its number; 0 when that cannot be found out
};

class PreferenceService {
public:
    virtual ~PreferenceService() = default;

    // Nothing when the key is missing; while the domain cannot be read, for every key but those set in it since.
    virtual PropertyList copyValue(std::string_view key, std::string_view domain) = 0;
    // The whole domain, its keys in stored order; empty when there is none.
    virtual PropertyList copyDomain(std::string_view domain) = 0;
    // Nothing as value removes the key.
    virtual void setValue(std::string_view key, PropertyList value, std::string_view domain) = 0;
    virtual void changeValues(PreferenceChange change, std::string_view domain) = 0;

    // Writes this process's changes and takes in those of others, as one step among all programs that share the domain.
    // True when everything changed so far is on the disk and flushed. On failure the stored domain is what it was, the
    // changes stay in memory, and the reason is logged. How long it waits for another program is the service's matter.
    virtual bool synchronize(std::string_view domain) = 0;

    // The handler hears within each synchronize, or first look at an unreadable domain, how it ended. The observation
    // must not outlive the service.
    virtual std::unique_ptr<Observation> observe(std::function<void(const PreferenceReport&)> handler) = 0;

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
