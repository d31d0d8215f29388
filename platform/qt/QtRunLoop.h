// Timers on Qt's event loop. They also run while a sheet is open.
#pragma once

#include "platform/RunLoop.h"

namespace platform::qt {

class QtRunLoop final : public RunLoop {
public:
    Date now() const override;
    std::unique_ptr<Timer> scheduleTimer(double seconds, bool repeats, std::function<void()> action) override;
};

}  // namespace platform::qt
