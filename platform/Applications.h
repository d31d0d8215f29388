// Finding and describing applications.
#pragma once

#include "platform/PlatformTypes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct ApplicationQuery {
    std::optional<FourCharCode> creator;
    std::string identifier;  // empty: not asked for
    std::string name;        // with its extension; empty: not asked for
};

struct ItemInformation {
    static constexpr std::uint32_t kIsNativeApplication = 0x80;
    std::uint32_t flags = 0;
    FourCharCode creator = kUnknownCreator;
};

// What an entry of the list may match an application by.
struct ApplicationFacts {
    std::string identifier;  // empty: none
    FourCharCode creator = kUnknownCreator;
    std::string path;
    std::string name;  // that a person sees
};

class ApplicationServices {
public:
    virtual ~ApplicationServices() = default;
    // Path of an application that matches any one of the query's parts, tried in the order creator, identifier, name.
    virtual std::optional<std::string> findApplication(const ApplicationQuery& query) = 0;
    // kNoErr and the item's information, or the status that tells why there is none (kFileNotFound, ...).
    virtual OSStatus itemInformation(std::string_view path, ItemInformation& information) = 0;
    // Nothing when the item has no bundle identifier.
    virtual std::optional<std::string> bundleIdentifier(std::string_view path) = 0;
    // The name that a person sees; the last path component when the item gives none.
    virtual std::string displayName(std::string_view path) = 0;
    // The native applications that a person finds on this machine, by name.
    virtual std::vector<ApplicationFacts> allApplications() = 0;
    // Starts the application at the path, detached from this process; nothing waits for it.
    virtual OSStatus openApplication(std::string_view path) = 0;
};

}  // namespace platform
