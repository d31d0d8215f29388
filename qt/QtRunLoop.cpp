#include "qt/QtRunLoop.h"

#include "platform/SharedTimer.h"
#include "propertylist/Date.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdlib>

namespace qt {

using namespace platform;

namespace {

constexpr std::int64_t kMicrosecondsPerMillisecond = 1000;

// Microseconds on a clock that nobody sets.
std::int64_t steadyNow() {
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

// A timer must not fire before its time, so the rest of a millisecond counts whole.
int millisecondsFor(std::int64_t microseconds) {
    std::int64_t rest = std::max<std::int64_t>(microseconds, 0);
    return static_cast<int>(std::min<std::int64_t>((rest + 999) / kMicrosecondsPerMillisecond, INT_MAX));
}

// What a timer and its pending event share: the action may destroy the timer that runs it.
class Schedule : public std::enable_shared_from_this<Schedule> {
public:
    Schedule(RunLoop& loop, double seconds, bool repeats, std::function<void()> action)
        : loop_(loop), interval_(seconds), repeats_(repeats), action_(std::move(action)), timer_(new QTimer) {
        timer_->setSingleShot(true);
        timer_->setTimerType(Qt::PreciseTimer);
    }
    void start() {
        QObject::connect(timer_.get(), &QTimer::timeout, [self = weak_from_this()] {
            if (auto schedule = self.lock()) schedule->fire();
        });
        setFireDate(dateByAdding(loop_.now(), interval_));
    }
    bool isValid() const { return isValid_; }
    // On the wall clock as it is set now.
    Date fireDate() const {
        constexpr std::int64_t kNoise = 1'000'000;  // below that nobody has set it: the date stays to the microsecond
        std::int64_t shift = loop_.now().microseconds - steadyNow() - clocksApart_;
        return std::abs(shift) < kNoise ? fireDate_ : dateByAdding(fireDate_, static_cast<double>(shift) / 1e6);
    }
    void setFireDate(Date date) {
        if (!isValid_) return;
        std::int64_t now = loop_.now().microseconds, steady = steadyNow();
        fireDate_ = date;
        clocksApart_ = now - steady;
        setDeadline(date.microseconds <= now ? steady : steady + (date.microseconds - now));
    }
    void invalidate() {
        isValid_ = false;
        timer_->stop();
    }
    std::string description() const {
        std::string text = repeats_ ? "timer that repeats every " + std::to_string(interval_) + " s" : "timer";
        return text + (isValid_ ? ", next at " + dateDescription(fireDate()) : ", not valid");
    }

private:
    struct Deleter {
        void operator()(QTimer* timer) const { timer->deleteLater(); }
    };

    void setDeadline(std::int64_t deadline) {
        deadline_ = deadline;
        timer_->start(millisecondsFor(deadline - steadyNow()));
    }
    // Qt's timers may be early by a part of a millisecond, and dates far away need several of their spans.
    void fire() {
        if (!isValid_) return;
        constexpr std::int64_t kEarly = 5 * kMicrosecondsPerMillisecond;
        if (deadline_ - steadyNow() > kEarly) return setDeadline(deadline_);
        if (repeats_)
            setFireDate(std::max(dateByAdding(fireDate(), interval_), loop_.now()));
        else
            invalidate();
        std::function<void()> action = action_;
        action();
    }

    RunLoop& loop_;
    double interval_;
    bool repeats_;
    bool isValid_ = true;
    Date fireDate_;                 // as it was set
    std::int64_t clocksApart_ = 0;  // by which the wall clock was before the steady one then, microseconds
    std::int64_t deadline_ = 0;     // on the steady clock
    std::function<void()> action_;
    std::unique_ptr<QTimer, Deleter> timer_;
};

struct SystemClock final : Clock {
    Date now() const override {
        using namespace std::chrono;
        return {duration_cast<microseconds>(system_clock::now().time_since_epoch()).count()};
    }
};
const SystemClock sWallClock;

}  // namespace

QtRunLoop::QtRunLoop() : QtRunLoop(sWallClock) {}

std::unique_ptr<Timer> QtRunLoop::scheduleTimer(double seconds, bool repeats, std::function<void()> action) {
    auto schedule = std::make_shared<Schedule>(*this, std::max(seconds, 0.0), repeats, std::move(action));
    schedule->start();
    return std::make_unique<SharedTimer<Schedule>>(std::move(schedule));
}

}  // namespace qt
