// Timers, messages and being asked to end, for a program without a toolkit: one loop of poll(2), on the thread that
// made it.
#pragma once

#include "linux/files/FileAccess.h"
#include "platform/RunLoop.h"

#include <csignal>
#include <functional>
#include <memory>
#include <vector>

namespace linux {

// From its construction to its end SIGINT and SIGTERM do nothing but end run(), at once when they came before it; so it
// is made before any other thread is, which would be killed by them. Programs started meanwhile have them blocked, too,
// unless whoever starts them sees to it. A timer fires when the time to its date has passed, or a
// little later, whatever becomes of the wall clock meanwhile. The loop outlives its timers.
class EventLoop final : public platform::RunLoop {
public:
    EventLoop();
    ~EventLoop() override;
    EventLoop(const EventLoop&) = delete;
    platform::Date now() const override;
    std::unique_ptr<platform::Timer> scheduleTimer(double seconds, bool repeats, std::function<void()> action) override;

    // What else the loop waits for.
    class Source {
    public:
        virtual ~Source() = default;
        virtual int descriptor() const = 0;  // negative: none
        virtual short events() const = 0;    // of poll(2), for the descriptor
        virtual bool isWaiting() const = 0;  // there is something to handle though the descriptor is silent
        virtual bool handleEvents() = 0;     // called before and after each wait; false: the loop ends
    };
    // Until stop(), a signal to end, or the end of the source.
    void run(Source& source);
    void stop() { isStopped_ = true; }

private:
    class Schedule;
    bool isAskedToEnd();             // once for each signal
    int millisecondsToWait() const;  // -1: for ever
    void fireTimers();

    sigset_t maskBefore_;
    Descriptor endSignals_;
    std::vector<std::weak_ptr<Schedule>> schedules_;
    bool isStopped_ = false;
};

}  // namespace linux
