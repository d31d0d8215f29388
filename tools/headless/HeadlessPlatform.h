// The parts of the platform for a pane without a display.
#pragma once

#include "linux/LinuxMachine.h"
#include "platform/Platform.h"
#include "tools/headless/BusModule.h"

namespace tools {

class HeadlessHost final : public platform::PaneHost {
public:
    void replyToShouldUnselect(bool) override {}
    void entryWasRemoved(std::string_view) override { wasEntryRemoved = true; }
    bool wasEntryRemoved = false;
};

// The log says once that there is nobody to tell.
class UnheardNotifications final : public platform::DistributedNotificationCenter {
public:
    explicit UnheardNotifications(platform::Log& log) : log_(log) {}
    void post(std::string_view name, std::string_view object, const platform::PropertyList& userInfo,
              bool deliverImmediately) override;
    std::unique_ptr<platform::Observation> addObserver(
        std::string_view name, std::string_view object, platform::Delivery delivery,
        std::function<void(const platform::Notification&)> handler) override;

private:
    platform::Log& log_;
    bool saidSo_ = false;
};

// The run loop of the session bus, or without one a loop that never turns. It knows what is still to come.
class PendingRunLoop final : public platform::RunLoop {
public:
    explicit PendingRunLoop(BusModule* bus) : bus_(bus) {}
    platform::Date now() const override;
    std::unique_ptr<platform::Timer> scheduleTimer(double seconds, bool repeats, std::function<void()> action) override;

    bool isPending() const { return isPending_; }  // a timer was set and has not fired
    void wait();  // until it has; at once without a bus, and when the process is asked to end

private:
    BusModule* bus_;
    bool isPending_ = false;
};

struct HeadlessPlatform : linux::LinuxMachine {
    HeadlessPlatform();
    // Nothing is shown and nobody is asked.
    platform::Platform forPane(platform::Bundle& bundle);

    HeadlessHost host;
    platform::InterfaceToolkit toolkit;
    platform::ExpressionServices expressions;  // the pane compiles none by itself
    UnheardNotifications unheard{log};
    BusModule* bus;  // null: no module for it, or no session bus
    PendingRunLoop runLoop;
};

}  // namespace tools
