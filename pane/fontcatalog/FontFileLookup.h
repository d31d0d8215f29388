// Finds outline font files, which the lists name relative to "Adobe/Fonts/" in the Application Support folders.
#pragma once

#include "platform/FileServices.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace fontcatalog {

struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
};

// Answers as an existence test for each path would, at the price of one listing for each folder: the lists name many
// thousands of files in a few folders. It remembers the listings, so make a new one for each build of the catalogue.
class FontFileLookup {
public:
    explicit FontFileLookup(platform::FileServices& files);  // which must outlive the look-up
    ~FontFileLookup();
    FontFileLookup(const FontFileLookup&) = delete;

    // Full path of the first file or folder found in the user, the local and the network domain, doubled slashes made
    // single; nothing when there is none. The relative path has forward slashes.
    std::optional<std::string> getFontFileForSubpath(std::optional<std::string_view> relativePath);
    std::optional<std::string> getFontFileForSubpath_inDomain(std::optional<std::string_view> relativePath,
                                                              platform::FolderDomain domain);

private:
    struct Listing;
    struct Domain;
    Domain& domainNamed(platform::FolderDomain domain);
    bool exists(Domain& domain, std::string_view path);
    Listing& listingOf(Domain& domain, std::string_view folder);
    bool ignoresCase(Listing& listing, std::string_view folder);

    platform::FileServices& files_;
    std::unordered_map<platform::FolderDomain, std::unique_ptr<Domain>> domains_;
    std::size_t namesLeft_;  // how many more the listings may hold
};

}  // namespace fontcatalog
