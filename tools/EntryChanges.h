// Changes of an entry that the window's controls do not make. Each is made to the stored list in the moment of saving,
// throws Refusal when the entry as it is then does not allow it, and leaves every key that it is not about as it is.
#pragma once

#include "pane/TSPreferencePane.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tools {

using EntryChange = TSPreferencePane::EntryChange;

// Of entries for expressions; the others have the names of their applications.
EntryChange renaming(std::string name);
EntryChange editing(std::string expression, std::optional<int> kind);
// All options as in the Global entry; of that one, as in a new list.
EntryChange resetting();
// To another row, among those below the Global entry.
EntryChange moving(std::int64_t to);
EntryChange unsetting(const settings::Option& option);

// These append a copy with the same options. For an application it is the entry that adding it would make. What the
// list has already is refused.
EntryChange duplicating(std::string expression, std::optional<std::string> name);
EntryChange duplicating(settings::ApplicationIdentity application);

}  // namespace tools
