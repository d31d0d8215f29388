// A sample of the updater that a module brings along: it looks for nothing and installs nothing, but holds the whole
// conversation with the settings pane. Its one argument is the module's path. docs/updates.md has the messages.
//
// TYPESLATE_SAMPLE_UPDATER chooses how it behaves: "fail" (ends with a failure's text), "hang" (never ends by itself).
// TYPESLATE_SAMPLE_UPDATER_STEP is the time of each of its steps in seconds.
#include "linux/preferences/DiskPreferences.h"
#include "linux/system/FolderBundle.h"
#include "linux/system/SystemLog.h"
#include "qt/QtRunLoop.h"
#include "qt/messages/DBusNotificationCenter.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

using namespace platform;

namespace {

constexpr std::string_view kStatusChange = "com.tarnwick.updater.statuschange";
constexpr std::string_view kCompleted = "com.tarnwick.updater.UpdateCheckCompleted";
constexpr std::string_view kCancel = "com.tarnwick.updater.CancelUpdate";
constexpr double kUsualStep = 1.5;        // seconds
constexpr double kLongestFarewell = 5.0;  // seconds
constexpr int kUsage = 2;

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

double stepSeconds() {
    double seconds = std::strtod(environment("TYPESLATE_SAMPLE_UPDATER_STEP").c_str(), nullptr);
    return seconds > 0 ? seconds : kUsualStep;
}

class SampleUpdater {
public:
    explicit SampleUpdater(const Bundle& module) {
        PropertyList own = module.infoValue("PlinthModuleID");
        identifier_ = own.isString() ? std::string(own.stringValue()) : module.identifier();
        version_ = module.infoValue("CFBundleShortVersionString").stringValue();
    }

    void start() {
        cancelled_ = center_.addObserver(kCancel, identifier_, Delivery::Each,
                                         [this](const Notification&) { end("Cancelled."); });
        say("Asking for the newest version…");
        if (mode_ == "hang") return;
        after([this] {
            say("Comparing versions…");
            after([this] { end(result()); });
        });
    }

private:
    void after(std::function<void()> next) { timer_ = runLoop_.scheduleTimer(stepSeconds(), false, std::move(next)); }

    std::string result() const {
        if (mode_ == "fail") return "Failed. The server could not be reached.";
        return "Version " + version_ + " is the newest one.";
    }

    void say(std::string_view status) {
        center_.post(kStatusChange, identifier_,
                     PropertyList::dictionary({{"Date", runLoop_.now()}, {"Status", status}}), true);
    }

    // The last word has been sent when it comes back from the bus.
    void end(std::string_view status) {
        if (farewell_) return;
        preferences_.setValue("SULastCheckStatus", status, identifier_);
        preferences_.synchronize(identifier_);
        farewell_ = center_.addObserver(kCompleted, identifier_, Delivery::Each,
                                        [](const Notification&) { QCoreApplication::quit(); });
        say(status);
        center_.post(kCompleted, identifier_, {}, true);
        timer_ = runLoop_.scheduleTimer(kLongestFarewell, false, [] { QCoreApplication::quit(); });
    }

    const std::string mode_ = environment("TYPESLATE_SAMPLE_UPDATER");
    std::string identifier_, version_;
    linux::SystemLog log_;
    linux::DiskPreferences preferences_{linux::preferencesFolder(), log_};
    qt::DBusNotificationCenter center_{log_};
    qt::QtRunLoop runLoop_;
    std::unique_ptr<Observation> cancelled_, farewell_;
    std::unique_ptr<Timer> timer_;
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    auto module = argc == 2 ? linux::FolderBundle::open(argv[1]) : nullptr;
    if (!module) {
        std::fputs("usage: \"Tarnwick Updater\" MODULE\n", stderr);
        return kUsage;
    }
    SampleUpdater updater(*module);
    updater.start();
    return application.exec();
}
