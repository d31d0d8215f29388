#include "host/HostPlatform.h"

#include "linux/LinuxMachine.h"
#include "linux/system/Network.h"
#include "qt/QtRunLoop.h"
#include "qt/QtToolkit.h"
#include "qt/messages/DBusNotificationCenter.h"

namespace host {

using namespace platform;

namespace {

// A window that does not answer for longer looks dead. The message line says why it waits, and tries again.
constexpr linux::LockWait kPatience{2'000};

}  // namespace

struct HostPlatform::Parts {
    linux::LinuxMachine machine;
    qt::DBusNotificationCenter notifications{machine.log};
    qt::QtRunLoop runLoop;
    qt::QtToolkit toolkit{[this](std::string_view path) {
        auto application = machine.applications.applicationAtPath(path);
        return application ? application->iconName : std::string();
    }};
};

HostPlatform::HostPlatform() : parts_(new Parts) {
    parts_->notifications.connectAhead();
    parts_->machine.preferences.setLongestWait(kPatience);
    parts_->toolkit.setReach([](std::string_view url) { return linux::mayReach(url); });
    parts_->toolkit.setApplicationLister([&applications = parts_->machine.applications] {
        std::vector<qt::ChoosableApplication> choosable;
        for (const linux::ApplicationRecord& application : applications.installedApplications())
            choosable.push_back({application.path, application.name});
        return choosable;
    });
}

// What the pane set without synchronising is kept, as it would be at the end of a session.
HostPlatform::~HostPlatform() { saveChanges(); }

Platform HostPlatform::forPane(Bundle& bundle, PaneHost& host) {
    parts_->toolkit.setTexts(&bundle);
    return parts_->machine.forPane(bundle, host, parts_->notifications, parts_->runLoop, parts_->toolkit);
}

void HostPlatform::setWindow(QWidget* window) { parts_->toolkit.setWindow(window); }

BundleServices& HostPlatform::bundles() { return parts_->machine.bundles; }

PreferenceService& HostPlatform::preferences() { return parts_->machine.preferences; }

RunLoop& HostPlatform::runLoop() { return parts_->runLoop; }

qt::QtToolkit& HostPlatform::toolkit() { return parts_->toolkit; }

void HostPlatform::saveChanges() { parts_->machine.preferences.synchronizeChanges(); }

}  // namespace host
