// Finds Adobe's font list files below "Adobe/TypeSpt/" in the Application Support folders.
#pragma once

#include "platform/FileServices.h"
#include "platform/Log.h"

#include <optional>
#include <string_view>
#include <vector>

namespace fontcatalog {

// Keys of an element of the file list, which has both.
inline constexpr std::string_view kPathKey = "Path";
inline constexpr std::string_view kModificationDateKey = "Date Last Modificated";  // of the content

// The elements for all list files of the user, then the local, then the network domain.
platform::PropertyList getAdobeFilesArray(platform::FileServices& files, platform::Log& log);

// Appends the domain's elements to the array, or to a new one, and returns it. Without a domain, returns the array as
// it is. A search that fails is logged, and what it found until then is kept.
std::optional<std::vector<platform::PropertyList>> scanDomain_addingToArray(
    platform::FileServices& files, platform::Log& log, std::optional<platform::FolderDomain> domain,
    std::optional<std::vector<platform::PropertyList>> array);

// Appends an element for every visible regular file whose name contains "AdobeFnt" and ".lst" in any case: those of the
// folder first, then those of each of its folders, hidden ones too. Links are followed; no folder is entered twice.
// A file without a date, or whose path is not valid UTF-8, is left out.
//
// Returns the status of the folder that was entered last: a folder that cannot be read may go unnoticed.
platform::OSStatus SearchFolderForAdobeFontLists(platform::FileServices& files, platform::Log& log,
                                                 std::string_view folder, std::vector<platform::PropertyList>& array);

}  // namespace fontcatalog
