// The wall clock.
#pragma once

#include "platform/PlatformTypes.h"

namespace platform {

class Clock {
public:
    virtual ~Clock() = default;
    // May stand still or go backwards when somebody sets it.
    virtual Date now() const = 0;
};

}  // namespace platform
