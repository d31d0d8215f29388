// The system's wall clock.
#pragma once

#include "platform/Clock.h"

#include <chrono>

namespace linux {

class LinuxClock final : public platform::Clock {
public:
    platform::Date now() const override {
        using namespace std::chrono;
        return {duration_cast<microseconds>(system_clock::now().time_since_epoch()).count()};
    }
};

}  // namespace linux
