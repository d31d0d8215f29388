#include "linux/messages/EventLoop.h"

#include "linux/system/LinuxClock.h"
#include "platform/SharedTimer.h"
#include "propertylist/Date.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdint>

using namespace platform;

namespace linux {
namespace {

// Microseconds on a clock that nobody sets.
std::int64_t steadyNow() {
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

// What a timer and the loop share: the action may destroy the timer that runs it.
class EventLoop::Schedule {
public:
    Schedule(const EventLoop& loop, double seconds, bool repeats, std::function<void()> action)
        : loop_(loop), interval_(seconds), repeats_(repeats), action_(std::move(action)) {
        setFireDate(dateByAdding(loop.now(), seconds));
    }
    bool isValid() const { return isValid_; }
    Date fireDate() const { return fireDate_; }
    void setFireDate(Date date) {
        if (!isValid_) return;
        const std::int64_t now = loop_.now().microseconds;
        fireDate_ = date;
        deadline_ = steadyNow() + (date.microseconds <= now ? 0 : date.microseconds - now);
    }
    void invalidate() { isValid_ = false; }
    std::int64_t deadline() const { return deadline_; }
    void fireIfDue() {
        if (!isValid_ || deadline_ > steadyNow()) return;
        if (repeats_)
            setFireDate(std::max(dateByAdding(fireDate_, interval_), loop_.now()));
        else
            invalidate();
        std::function<void()> action = action_;
        action();
    }
    std::string description() const {
        std::string text = repeats_ ? "timer that repeats every " + std::to_string(interval_) + " s" : "timer";
        return text + (isValid_ ? ", next at " + propertylist::dateDescription(fireDate_) : ", not valid");
    }

private:
    const EventLoop& loop_;
    double interval_;
    bool repeats_, isValid_ = true;
    Date fireDate_;
    std::int64_t deadline_ = 0;  // on the steady clock
    std::function<void()> action_;
};

EventLoop::EventLoop() {
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGINT);
    sigaddset(&mask, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &mask, &maskBefore_);
    endSignals_ = Descriptor(FileAccess::system(), signalfd(-1, &mask, SFD_CLOEXEC | SFD_NONBLOCK));
}

// What came too late to end the loop must not end the program.
EventLoop::~EventLoop() {
    while (isAskedToEnd()) {
    }
    pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
}

bool EventLoop::isAskedToEnd() {
    signalfd_siginfo signal;
    return ::read(endSignals_.number(), &signal, sizeof signal) == sizeof signal;
}

Date EventLoop::now() const { return LinuxClock().now(); }

std::unique_ptr<Timer> EventLoop::scheduleTimer(double seconds, bool repeats, std::function<void()> action) {
    auto schedule = std::make_shared<Schedule>(*this, std::max(seconds, 0.0), repeats, std::move(action));
    schedules_.push_back(schedule);
    return std::make_unique<SharedTimer<Schedule>>(std::move(schedule));
}

int EventLoop::millisecondsToWait() const {
    std::int64_t next = INT64_MAX;
    for (const auto& weak : schedules_)
        if (auto schedule = weak.lock(); schedule && schedule->isValid()) next = std::min(next, schedule->deadline());
    if (next == INT64_MAX) return -1;
    // The rest of a millisecond counts whole: what is not due yet need not be looked at.
    std::int64_t rest = std::max<std::int64_t>(next - steadyNow(), 0);
    return static_cast<int>(std::min<std::int64_t>((rest + 999) / 1000, INT_MAX));
}

void EventLoop::fireTimers() {
    std::erase_if(schedules_, [](const auto& weak) { return weak.expired(); });
    for (const auto& weak : std::vector(schedules_))
        if (auto schedule = weak.lock()) schedule->fireIfDue();
}

void EventLoop::run(Source& source) {
    isStopped_ = false;
    while (source.handleEvents()) {
        fireTimers();
        if (isStopped_) return;
        pollfd waits[] = {{endSignals_.number(), POLLIN, 0}, {source.descriptor(), source.events(), 0}};
        if (::poll(waits, std::size(waits), source.isWaiting() ? 0 : millisecondsToWait()) < 0) {
            if (errno == EINTR) continue;
            return;
        }
        if (isAskedToEnd()) return;
    }
}

}  // namespace linux
