// Merging the entries that the pane ships into the user's list.
#pragma once

#include "platform/PlatformTypes.h"

#include <vector>

namespace settings {

// Keys of the settings domain, by which each version is merged once only.
inline constexpr std::string_view kAddedDefaultExclusionsKey = "Added Default Exclusions";      // boolean
inline constexpr std::string_view kDefaultExclusionsVersionKey = "Default Exclusions Version";  // integer
inline constexpr int kDefaultExclusionsVersion = 1000;  // of the list that the pane ships now

// A shipped entry replaces each entry of the same "Type" and "Data", settings included, and stands in its place; one
// that replaces none goes to the end. So does one whose index in `shipped` is greater than the number of the other
// entries at that moment. Elements of `shipped`, an array, that are not dictionaries count for nothing; anything but an
// array has no elements.
void mergeExclusions(std::vector<platform::PropertyList>& list, const platform::PropertyList& shipped);

}  // namespace settings
