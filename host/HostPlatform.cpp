#include "host/HostPlatform.h"

#include "host/FontLister.h"
#include "host/WindowOwners.h"
#include "linux/LinuxMachine.h"
#include "linux/system/Network.h"
#include "linux/texts/DisplayText.h"
#include "qt/QtRunLoop.h"
#include "qt/QtToolkit.h"
#include "qt/messages/DBusNotificationCenter.h"
#include "reader/Expressions.h"

#include <string_view>
#include <unordered_map>

namespace host {

using namespace platform;

namespace {

// A window that does not answer for longer looks dead. The message line says why it waits, and tries again.
constexpr linux::LockWait kPatience{2'000};

qt::ChoosableApplication choosable(const linux::ApplicationRecord& application) {
    return {.path = application.path,
            .name = application.name,
            .location = linux::displayText(application.path),
            .identifier = linux::displayText(application.identifier),
            .genericName = application.genericName,
            .searchTexts = application.searchTexts};
}

// Those that run come at the end where menus do not show them.
std::vector<qt::ChoosableApplication> choosableApplications(linux::LinuxMachine& machine) {
    std::vector<qt::ChoosableApplication> all;
    std::unordered_map<std::string_view, std::size_t> places;
    const std::vector<linux::ApplicationRecord> installed = machine.applications.installedApplications();
    for (const linux::ApplicationRecord& application : installed) {
        places.emplace(application.path, all.size());
        all.push_back(choosable(application));
    }
    for (const linux::ApplicationRecord& running : machine.processes.runningApplications(windowOwners())) {
        auto known = places.find(running.path);
        if (known == places.end()) {
            all.push_back(choosable(running));
            all.back().isInMenus = false;
        }
        (known == places.end() ? all.back() : all[known->second]).isRunning = true;
    }
    return all;
}

}  // namespace

struct HostPlatform::Parts {
    linux::LinuxMachine machine;
    qt::DBusNotificationCenter notifications{machine.log};
    qt::QtRunLoop runLoop;
    qt::QtToolkit toolkit{[this](std::string_view path) {
        auto application = machine.applications.applicationAtPath(path);
        return application ? application->iconName : std::string();
    }};
    std::unique_ptr<ExpressionServices> expressions = reader::expressionServices();
};

HostPlatform::HostPlatform() : parts_(new Parts) {
    parts_->notifications.connectAhead();
    parts_->machine.preferences.setLongestWait(kPatience);
    parts_->toolkit.setReach([](std::string_view url) { return linux::mayReach(url); });
    parts_->toolkit.setApplicationLister([&machine = parts_->machine] { return choosableApplications(machine); });
    parts_->toolkit.setFontLister(fontLister());
}

// What the pane set without synchronising is kept, as it would be at the end of a session.
HostPlatform::~HostPlatform() { saveChanges(); }

Platform HostPlatform::forPane(Bundle& bundle, PaneHost& host) {
    parts_->toolkit.setTexts(&bundle);
    return parts_->machine.forPane(bundle, host, parts_->notifications, parts_->runLoop, parts_->toolkit,
                                   *parts_->expressions);
}

void HostPlatform::setWindow(QWidget* window) { parts_->toolkit.setWindow(window); }

BundleServices& HostPlatform::bundles() { return parts_->machine.bundles; }

PreferenceService& HostPlatform::preferences() { return parts_->machine.preferences; }

RunLoop& HostPlatform::runLoop() { return parts_->runLoop; }

qt::QtToolkit& HostPlatform::toolkit() { return parts_->toolkit; }

void HostPlatform::saveChanges() { parts_->machine.preferences.synchronizeChanges(); }

}  // namespace host
