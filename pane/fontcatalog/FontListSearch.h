// Finds Adobe's font list files below "Adobe/TypeSpt/" in the Application Support folders.
#pragma once

#include "pane/fontcatalog/Context.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fontcatalog {

// Keys of an element of the file list, which has both.
inline constexpr std::string_view kPathKey = "Path";
inline constexpr std::string_view kModificationDateKey = "Date Last Modificated";  // of the content

// Where lists are looked for, in this order.
inline constexpr std::array kListDomains = {platform::FolderDomain::User, platform::FolderDomain::Local,
                                            platform::FolderDomain::Network};

// Bounds of one search. Folders that are there by themselves are entered however deep they lie. A link to a folder is
// followed where it leads to its own file system, and from the folder that it leads to the search goes down so many
// levels more within that file system, whatever further links are on the way.
inline constexpr unsigned kLevelsBelowLink = 3;
inline constexpr std::size_t kMostFoldersByLinks = 10'000;
inline constexpr std::size_t kMostFolders = 200'000;  // altogether

// The elements for all list files of the user, then the local, then the network domain.
platform::PropertyList getAdobeFilesArray(const Context& context);
// The domain's folder for lists, with a final slash, whether or not it exists.
std::optional<std::string> listFolder(platform::FileServices& files, platform::FolderDomain domain);

// Appends the domain's elements to the array, or to a new one, and returns it. Without a domain, returns the array as
// it is. A search that fails is logged, and what it found until then is kept.
std::optional<std::vector<platform::PropertyList>> scanDomain_addingToArray(
    const Context& context, std::optional<platform::FolderDomain> domain,
    std::optional<std::vector<platform::PropertyList>> array);

// Appends an element for every visible regular file whose name contains "AdobeFnt" and ".lst" in any case: those of the
// folder first, then those of each of its folders, hidden ones too. Links to files are followed; each folder's files
// come once. A file without a date, or whose path is not valid UTF-8, is left out. The folder itself may be a link to
// anywhere.
//
// Returns the status of the folder that was entered last: a folder that cannot be read may go unnoticed.
platform::OSStatus SearchFolderForAdobeFontLists(const Context& context, std::string_view folder,
                                                 std::vector<platform::PropertyList>& array);

}  // namespace fontcatalog
