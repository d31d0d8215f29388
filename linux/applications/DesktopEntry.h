// Desktop entries: files that tell how a program is started and shown, by freedesktop.org's rules, version 1.5. GLib
// reads them; built without GLib, no file is a desktop entry.
#pragma once

#include "linux/applications/ApplicationRecord.h"

namespace linux {

// A limit that no honest file comes near: a longer value is as good as missing.
inline constexpr std::size_t kMaximumDesktopEntryValue = 4096;

// Nothing when the bytes are no desktop entry: GLib cannot read them, another group comes first, or there is no type or
// (for an application) no name. A hidden entry needs neither; it and one of another type are records too, since they
// stand in the way of entries with the same identifier in later folders. `words` is the command without files, empty
// when that holds an unknown field code or an open quote; what only D-Bus starts has no `program`.
std::optional<ApplicationRecord> desktopEntryRecord(const std::string& path, std::string identifier,
                                                    std::string_view bytes, const ApplicationEnvironment& environment);

}  // namespace linux
