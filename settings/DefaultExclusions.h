// Merging the entries that the pane ships into the user's list.
#pragma once

#include "platform/PlatformTypes.h"

#include <vector>

namespace settings {

inline constexpr std::string_view kAddedDefaultExclusionsKey = "Added Default Exclusions";
inline constexpr std::string_view kDefaultExclusionsVersionKey = "Default Exclusions Version";
inline constexpr int kDefaultExclusionsVersion = 1000;

// A shipped entry replaces each entry of the same "Type" and "Data", settings included; one that replaces none goes to
// the end. Elements of `shipped` that are not dictionaries count for nothing.
void mergeExclusions(std::vector<platform::PropertyList>& list, const platform::PropertyList& shipped);

}  // namespace settings
