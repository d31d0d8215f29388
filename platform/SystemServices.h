// The machine and the user.
#pragma once

#include "platform/PlatformTypes.h"

#include <cstdint>
#include <optional>

namespace platform {

class SystemServices {
public:
    virtual ~SystemServices() = default;
    // Selectors 'sysv' (feature level of the platform layer, binary-coded decimal), 'sys1', 'sys2', 'sys3' (major,
    // minor and bug-fix number of the system). Nothing for a selector that the platform does not know.
    virtual std::optional<std::uint32_t> gestalt(FourCharCode selector) = 0;
    virtual std::uint32_t realUserID() = 0;
};

}  // namespace platform
