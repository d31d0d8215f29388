// Timers on the main thread's run loop, and the wall clock.
#pragma once

#include "platform/Clock.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

// A pending or finished timer. Destroying it invalidates it; it may be destroyed from within its own action.
class Timer {
public:
    virtual ~Timer() = default;
    virtual bool isValid() const = 0;  // false once a one-shot timer has fired, or after invalidate()
    virtual Date fireDate() const = 0;
    virtual void setFireDate(Date date) = 0;  // no effect once invalid
    virtual void invalidate() = 0;
    virtual std::string description() const = 0;
};

class RunLoop : public Clock {
public:
    // Fires after the given number of seconds, then at that interval when it repeats. The action runs on the main
    // thread, also while a sheet is open.
    virtual std::unique_ptr<Timer> scheduleTimer(double seconds, bool repeats, std::function<void()> action) = 0;
};

}  // namespace platform
