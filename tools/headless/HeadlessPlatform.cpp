#include "tools/headless/HeadlessPlatform.h"

#include "propertylist/Date.h"

#include <utility>

using namespace platform;

namespace tools {
namespace {

// A timer of a loop that never turns.
class IdleTimer final : public Timer {
public:
    explicit IdleTimer(Date date) : date_(date) {}
    bool isValid() const override { return isValid_; }
    Date fireDate() const override { return date_; }
    void setFireDate(Date date) override { date_ = date; }
    void invalidate() override { isValid_ = false; }
    std::string description() const override { return "timer of an idle run loop"; }

private:
    Date date_;
    bool isValid_ = true;
};

class NoObservation final : public Observation {};

BusModule* connectedBus() {
    BusModule* bus = findBusModule();
    return bus && bus->isConnected() ? bus : nullptr;
}

}  // namespace

void UnheardNotifications::post(std::string_view, std::string_view, const PropertyList&, bool) {
    if (!std::exchange(saidSo_, true)) log_("No session bus can be reached: changes are not announced");
}

std::unique_ptr<Observation> UnheardNotifications::addObserver(std::string_view, std::string_view, Delivery,
                                                               std::function<void(const Notification&)>) {
    return std::make_unique<NoObservation>();
}

Date PendingRunLoop::now() const { return linux::LinuxClock().now(); }

std::unique_ptr<Timer> PendingRunLoop::scheduleTimer(double seconds, bool repeats, std::function<void()> action) {
    isPending_ = true;
    if (!bus_) return std::make_unique<IdleTimer>(dateByAdding(now(), seconds));
    return bus_->runLoop().scheduleTimer(seconds, repeats, [this, action = std::move(action)] {
        isPending_ = false;
        bus_->stop();
        action();
    });
}

void PendingRunLoop::wait() {
    if (bus_ && isPending_) bus_->run();
}

HeadlessPlatform::HeadlessPlatform() : bus(connectedBus()), runLoop(bus) {}

Platform HeadlessPlatform::forPane(Bundle& bundle) {
    DistributedNotificationCenter& heard = bus ? bus->notifications() : unheard;
    return LinuxMachine::forPane(bundle, host, heard, runLoop, toolkit, expressions);
}

}  // namespace tools
