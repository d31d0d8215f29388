// How an entry's options stand to those of the Global entry. Options count by what they show: a missing one has the
// value that its control shows then.
#pragma once

#include "settings/SettingsSchema.h"

#include <span>

namespace entrylist {

bool differs(const platform::PropertyList& entry, const platform::PropertyList& global, const settings::Option& option);
// In one option at least.
bool differs(const platform::PropertyList& entry, const platform::PropertyList& global);

// The entry with these options as the other has them: stored where they are stored there, else missing. All other keys,
// of the settings too, stay.
platform::PropertyList withOptionsOf(const platform::PropertyList& entry, const platform::PropertyList& other,
                                     std::span<const settings::Option> options);

}  // namespace entrylist
