#include "qt/QtRunLoop.h"
#include "propertylist/Date.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <climits>

namespace qt {

using namespace platform;

namespace {

constexpr std::int64_t kMicrosecondsPerMillisecond = 1000;

// A timer must not fire before its date, so the rest of a millisecond counts whole.
int millisecondsFrom(Date now, Date date) {
    std::int64_t rest = date.microseconds <= now.microseconds ? 0 : date.microseconds - now.microseconds;
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
    Date fireDate() const { return fireDate_; }
    void setFireDate(Date date) {
        if (!isValid_) return;
        fireDate_ = date;
        timer_->start(millisecondsFrom(loop_.now(), date));
    }
    void invalidate() {
        isValid_ = false;
        timer_->stop();
    }
    std::string description() const {
        std::string text = repeats_ ? "timer that repeats every " + std::to_string(interval_) + " s" : "timer";
        return text + (isValid_ ? ", next at " + dateDescription(fireDate_) : ", not valid");
    }

private:
    struct Deleter {
        void operator()(QTimer* timer) const { timer->deleteLater(); }
    };

    // Qt's timers may be early by a part of a millisecond, and dates far away need several of their spans.
    void fire() {
        if (!isValid_) return;
        Date now = loop_.now();
        constexpr std::int64_t kEarly = 5 * kMicrosecondsPerMillisecond;
        if (fireDate_.microseconds - now.microseconds > kEarly) return setFireDate(fireDate_);
        if (repeats_)
            setFireDate(std::max(dateByAdding(fireDate_, interval_), now));
        else
            invalidate();
        std::function<void()> action = action_;
        action();
    }

    RunLoop& loop_;
    double interval_;
    bool repeats_;
    bool isValid_ = true;
    Date fireDate_;
    std::function<void()> action_;
    std::unique_ptr<QTimer, Deleter> timer_;
};

class QtTimer final : public Timer {
public:
    explicit QtTimer(std::shared_ptr<Schedule> schedule) : schedule_(std::move(schedule)) {}
    ~QtTimer() override { schedule_->invalidate(); }
    bool isValid() const override { return schedule_->isValid(); }
    Date fireDate() const override { return schedule_->fireDate(); }
    void setFireDate(Date date) override { schedule_->setFireDate(date); }
    void invalidate() override { schedule_->invalidate(); }
    std::string description() const override { return schedule_->description(); }

private:
    std::shared_ptr<Schedule> schedule_;
};

}  // namespace

Date QtRunLoop::now() const {
    using namespace std::chrono;
    return {duration_cast<microseconds>(system_clock::now().time_since_epoch()).count()};
}

std::unique_ptr<Timer> QtRunLoop::scheduleTimer(double seconds, bool repeats, std::function<void()> action) {
    auto schedule = std::make_shared<Schedule>(*this, std::max(seconds, 0.0), repeats, std::move(action));
    schedule->start();
    return std::make_unique<QtTimer>(std::move(schedule));
}

}  // namespace qt
