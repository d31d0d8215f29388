// A timer of a run loop whose schedule the loop shares, because an action may destroy the timer that runs it.
#pragma once

#include "platform/RunLoop.h"

#include <memory>
#include <string>
#include <utility>

namespace platform {

// The schedule has the timer's own functions; it is not valid any more when the timer is gone.
template <typename Schedule>
class SharedTimer final : public Timer {
public:
    explicit SharedTimer(std::shared_ptr<Schedule> schedule) : schedule_(std::move(schedule)) {}
    ~SharedTimer() override { schedule_->invalidate(); }
    bool isValid() const override { return schedule_->isValid(); }
    Date fireDate() const override { return schedule_->fireDate(); }
    void setFireDate(Date date) override { schedule_->setFireDate(date); }
    void invalidate() override { schedule_->invalidate(); }
    std::string description() const override { return schedule_->description(); }

private:
    std::shared_ptr<Schedule> schedule_;
};

}  // namespace platform
