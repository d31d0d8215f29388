// The system's wall clock.
#pragma once

#include "platform/Clock.h"

#include <chrono>

namespace platform::posix {

class LinuxClock final : public Clock {
public:
    Date now() const override {
        using namespace std::chrono;
        return {duration_cast<microseconds>(system_clock::now().time_since_epoch()).count()};
    }
};

}  // namespace platform::posix
