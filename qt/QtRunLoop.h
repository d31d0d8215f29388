// Timers on Qt's event loop. They also run while a sheet is open.
#pragma once

#include "platform/RunLoop.h"

namespace qt {

class QtRunLoop final : public platform::RunLoop {
public:
    platform::Date now() const override;
    std::unique_ptr<platform::Timer> scheduleTimer(double seconds, bool repeats, std::function<void()> action) override;
};

}  // namespace qt
