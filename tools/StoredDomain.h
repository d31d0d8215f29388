// Reading and saving a preference domain for a command: what cannot be done is refused, with the file and the reason.
#pragma once

#include "linux/preferences/DiskPreferences.h"

#include <string_view>

namespace tools {

// How long a command waits for another program that keeps a domain locked: what --wait says, else
// DiskPreferences::kPatience.
linux::LockWait& lockWait();

void requireReadable(linux::DiskPreferences& preferences, std::string_view domain);
// Synchronizes. What could not be saved is lost with the command.
void save(linux::DiskPreferences& preferences, std::string_view domain);
// Throws the refusal of a domain that was not saved at the last try.
[[noreturn]] void refuseUnsaved(linux::DiskPreferences& preferences, std::string_view domain);

}  // namespace tools
