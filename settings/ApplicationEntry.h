// Entries for applications: what one is made of, and which applications a list has already.
#pragma once

#include "platform/PlatformTypes.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace settings {

// The four bytes of a creator code as they lie in memory, up to the first zero byte. On a little-endian machine that is
// the reverse of how the code is usually written; stored entries rely on it.
std::string creatorText(std::uint32_t code);

struct ApplicationIdentity {
    std::string path;
    std::string displayName;
    std::optional<std::string> bundleIdentifier;
    std::string creator;  // "????" or empty: none
};

// Matched by bundle identifier if there is one, else by creator, else by path.
platform::PropertyList applicationEntry(const ApplicationIdentity& application,
                                        const platform::PropertyList& entrySettings);

// Answers in constant time whether some entry of a list matches an application by the entry's own kind.
class ApplicationIndex {
public:
    explicit ApplicationIndex(const std::vector<platform::PropertyList>& list);
    void add(const platform::PropertyList& entry);
    bool contains(const ApplicationIdentity& application) const;

private:
    std::unordered_set<std::string> identifiers_, creators_, paths_;
};

}  // namespace settings
