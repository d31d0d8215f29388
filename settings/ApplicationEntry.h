// Entries for applications: what one is made of, and which applications a list has already.
#pragma once

#include "platform/PlatformTypes.h"

#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

namespace settings {

// The creator code of what has none.
inline constexpr std::string_view kNoCreator = "????";

// The four bytes of a creator code as they lie in memory, up to the first zero byte. On a little-endian machine that is
// the reverse of how the code is usually written; stored entries rely on it.
std::string creatorText(std::uint32_t code);

struct ApplicationIdentity {
    std::string path;  // absolute
    std::string displayName;
    std::optional<std::string> bundleIdentifier;
    std::string creator;  // "????" or empty: none
};

// A new entry, which matches by bundle identifier if there is one, else by creator, else by path; what the application
// has of these is stored whichever is used.
platform::PropertyList applicationEntry(const ApplicationIdentity& application,
                                        const platform::PropertyList& entrySettings);

// What became of files that were to be added.
struct AddedFiles {
    struct File {
        std::string path, displayName;
    };
    std::vector<File> added, alreadyListed, noApplications;
};

// Appends an entry for each application that no entry matches yet, with the settings given, else with those that a new
// entry gets. Whether each of them was added.
std::vector<bool> addApplications(std::vector<platform::PropertyList>& list,
                                  const std::vector<ApplicationIdentity>& applications,
                                  const platform::PropertyList& entrySettings = {});

// Answers in constant time whether some entry of a list matches an application by the entry's own type. It is a copy:
// an entry that joins the list later must be added here, too. Strings are compared byte by byte.
class ApplicationIndex {
public:
    explicit ApplicationIndex(std::span<const platform::PropertyList> list);
    void add(const platform::PropertyList& entry);
    bool contains(const ApplicationIdentity& application) const;
    bool asksForCreators() const { return !creators_.empty(); }  // else an application's makes no difference

private:
    std::unordered_set<std::string> identifiers_, creators_, paths_;
};

}  // namespace settings
