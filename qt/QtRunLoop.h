// Timers on Qt's event loop, for the thread that has it. They also run while a sheet is open. A timer fires at its date
// or a little later, never more than five milliseconds before; dates any number of years away are kept. The loop
// outlives its timers.
#pragma once

#include "platform/RunLoop.h"

namespace qt {

class QtRunLoop final : public platform::RunLoop {
public:
    platform::Date now() const override;
    std::unique_ptr<platform::Timer> scheduleTimer(double seconds, bool repeats, std::function<void()> action) override;
};

}  // namespace qt
