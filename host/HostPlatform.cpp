#include "host/HostPlatform.h"

#include "platform/linux/AutostartMirror.h"
#include "platform/linux/DiskPreferences.h"
#include "platform/linux/FolderBundle.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/LinuxDates.h"
#include "platform/linux/LinuxFiles.h"
#include "platform/linux/LinuxLauncher.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/LinuxSystem.h"
#include "platform/linux/RuntimeLoader.h"
#include "platform/linux/SystemLog.h"
#include "platform/qt/QtRunLoop.h"
#include "platform/qt/QtToolkit.h"
#include "platform/qt/dbus/DBusNotificationCenter.h"

namespace host {

using namespace platform;

struct HostPlatform::Parts {
    posix::SystemLog log;
    posix::DiskPreferences preferences{posix::preferencesFolder(), log};
    posix::AutostartMirror autostart{preferences, log};
    qt::DBusNotificationCenter notifications{log};
    posix::FolderBundles bundles;
    LinuxFiles files;
    posix::LinuxApplications applications;
    posix::LinuxSystem system;
    qt::QtRunLoop runLoop;
    qt::QtToolkit toolkit{[this](std::string_view path) {
        auto application = applications.applicationAtPath(path);
        return application ? application->iconName : std::string();
    }};
    posix::LinuxProcesses processes{applications};
    posix::LinuxLauncher launcher;
    posix::LinuxDates dates;
};

HostPlatform::HostPlatform() : parts_(new Parts) {
    parts_->bundles.addLoaded(posix::loadRuntime(parts_->files));
    parts_->toolkit.setApplicationLister([&applications = parts_->applications] {
        std::vector<qt::ChoosableApplication> choosable;
        for (const posix::InstalledApplication& application : applications.installedApplications())
            choosable.push_back({application.path, application.name});
        return choosable;
    });
}

// What the pane set without synchronising is kept, as it would be at the end of a session.
HostPlatform::~HostPlatform() { parts_->preferences.synchronizeChanges(); }

Platform HostPlatform::forPane(Bundle& bundle, PaneHost& host) {
    Parts& p = *parts_;
    p.toolkit.setTexts(&bundle);
    return {.paneBundle = bundle,
            .host = host,
            .preferences = p.preferences,
            .notifications = p.notifications,
            .bundles = p.bundles,
            .files = p.files,
            .applications = p.applications,
            .system = p.system,
            .runLoop = p.runLoop,
            .toolkit = p.toolkit,
            .log = p.log,
            .processes = p.processes,
            .launcher = p.launcher,
            .dates = p.dates};
}

void HostPlatform::setWindow(QWidget* window) { parts_->toolkit.setWindow(window); }

BundleServices& HostPlatform::bundles() { return parts_->bundles; }

PreferenceService& HostPlatform::preferences() { return parts_->preferences; }

}  // namespace host
