// The system's version and the user, on Linux.
#pragma once

#include "platform/SystemServices.h"

#include <optional>
#include <string_view>

namespace linux {

class LinuxSystem final : public platform::SystemServices {
public:
    // 'sysv' is the feature level of this platform layer, 0x1049, whatever the distribution; 'sys1' to 'sys3' come from
    // VERSION_ID of os-release, and the minor number from /etc/debian_version where VERSION_ID has none. A distribution
    // without versions, as rolling ones are, has none of the three.
    std::optional<std::uint32_t> gestalt(platform::FourCharCode selector) override;
    // TYPESLATE_UID=N stands in for the real user id, so that a test or a demonstration that runs as root can show what
    // other users see. It changes what the pane shows, not what the process may do.
    std::uint32_t realUserID() override;
};

struct SystemVersion {
    std::uint32_t major = 0, minor = 0, bugFix = 0;
    bool operator==(const SystemVersion&) const = default;
};
// From the contents of os-release and of debian_version; nothing when VERSION_ID does not begin with a number.
std::optional<SystemVersion> parseSystemVersion(std::string_view osRelease, std::string_view debianVersion);

}  // namespace linux
