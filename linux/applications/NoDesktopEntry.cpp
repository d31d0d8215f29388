// What DesktopEntry.h promises where GLib is missing.
#include "linux/applications/DesktopEntry.h"

namespace linux {

// NOLINTNEXTLINE(performance-unnecessary-value-param): the other one keeps the identifier.
std::optional<ApplicationRecord> desktopEntryRecord(const std::string&, std::string, std::string_view,
                                                    const ApplicationEnvironment&) {
    return {};
}

}  // namespace linux
