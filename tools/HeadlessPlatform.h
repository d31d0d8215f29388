// The parts of the platform for a pane without a display.
#pragma once

#include "linux/applications/LinuxApplications.h"
#include "linux/files/LinuxFiles.h"
#include "linux/loginitems/AutostartMirror.h"
#include "linux/preferences/DiskPreferences.h"
#include "linux/processes/LinuxLauncher.h"
#include "linux/processes/LinuxProcesses.h"
#include "linux/system/FolderBundle.h"
#include "linux/system/LinuxSystem.h"
#include "linux/system/SystemLog.h"
#include "platform/Platform.h"
#include "tools/BusModule.h"

namespace tools {

// Shows nothing and asks nobody.
class HeadlessToolkit final : public platform::InterfaceToolkit {
public:
    platform::ImageRef imageAtPath(std::string_view) override { return nullptr; }
    platform::ImageRef workspaceIcon(std::string_view) override { return nullptr; }
    platform::ImageRef genericApplicationIcon() override { return nullptr; }
    platform::ImageRef applicationIcon() override { return nullptr; }
    void setApplicationIcon(const platform::ImageRef&) override {}
    void runAlert(std::string_view, std::string_view) override {}
    void beep() override {}
    void beginOpenPanel(const platform::OpenPanelRequest&, std::function<void(platform::OpenPanel&, int)>) override {}
    void showFontPanel(int) override {}
    void openURL(std::string_view) override {}
    void openFile(std::string_view) override {}
};

class HeadlessHost final : public platform::PaneHost {
public:
    void replyToShouldUnselect(bool) override {}
};

// No date is shown here, and the library that words them for people takes long to load.
class HeadlessDates final : public platform::DateFormatter {
public:
    std::optional<std::string> string(platform::Date, platform::DateStyle, platform::DateStyle) override {
        return std::nullopt;
    }
};

// The log says once that there is nobody to tell.
class UnheardNotifications final : public platform::DistributedNotificationCenter {
public:
    explicit UnheardNotifications(platform::Log& log) : log_(log) {}
    void post(std::string_view name, std::string_view object, const platform::PropertyList& userInfo,
              bool deliverImmediately) override;
    std::unique_ptr<platform::Observation> addObserver(
        std::string_view name, std::string_view object,
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

struct HeadlessPlatform {
    HeadlessPlatform();
    HeadlessPlatform(const HeadlessPlatform&) = delete;
    platform::Platform forPane(platform::Bundle& bundle);

    linux::SystemLog log;
    linux::DiskPreferences preferences{linux::preferencesFolder(), log};
    linux::AutostartMirror autostart{preferences, log};
    linux::FolderBundles bundles;
    linux::LinuxFiles files;
    linux::LinuxApplications applications;
    linux::LinuxSystem system;
    linux::LinuxProcesses processes{applications};
    linux::LinuxLauncher launcher;
    HeadlessHost host;
    HeadlessToolkit toolkit;
    HeadlessDates dates;
    UnheardNotifications unheard{log};
    BusModule* bus;  // null: no module for it, or no session bus
    PendingRunLoop runLoop;
};

}  // namespace tools
