// Timers on Qt's event loop, for the thread that has it. They also run while a sheet is open. A timer fires when the
// time to its date has passed, or a little later, never more than five milliseconds before; a wall clock that is set
// meanwhile changes its date, and not when it fires. Dates any number of years away are kept. The loop outlives its
// timers.
#pragma once

#include "platform/RunLoop.h"

namespace qt {

class QtRunLoop final : public platform::RunLoop {
public:
    QtRunLoop();  // with the system's wall clock
    // The clock outlives the loop.
    explicit QtRunLoop(const platform::Clock& wallClock) : wallClock_(wallClock) {}
    platform::Date now() const override { return wallClock_.now(); }
    std::unique_ptr<platform::Timer> scheduleTimer(double seconds, bool repeats, std::function<void()> action) override;

private:
    const platform::Clock& wallClock_;
};

}  // namespace qt
