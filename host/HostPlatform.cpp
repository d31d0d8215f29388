#include "host/HostPlatform.h"

#include "linux/applications/LinuxApplications.h"
#include "linux/files/LinuxFiles.h"
#include "linux/loginitems/AutostartMirror.h"
#include "linux/preferences/DiskPreferences.h"
#include "linux/processes/LinuxLauncher.h"
#include "linux/processes/LinuxProcesses.h"
#include "linux/system/FolderBundle.h"
#include "linux/system/LinuxDates.h"
#include "linux/system/LinuxSystem.h"
#include "linux/system/RuntimeLoader.h"
#include "linux/system/SystemLog.h"
#include "qt/QtRunLoop.h"
#include "qt/QtToolkit.h"
#include "qt/messages/DBusNotificationCenter.h"

namespace host {

using namespace platform;

struct HostPlatform::Parts {
    linux::SystemLog log;
    linux::DiskPreferences preferences{linux::preferencesFolder(), log};
    linux::AutostartMirror autostart{preferences, log};
    qt::DBusNotificationCenter notifications{log};
    linux::FolderBundles bundles;
    linux::LinuxFiles files;
    linux::LinuxApplications applications;
    linux::LinuxSystem system;
    qt::QtRunLoop runLoop;
    qt::QtToolkit toolkit{[this](std::string_view path) {
        auto application = applications.applicationAtPath(path);
        return application ? application->iconName : std::string();
    }};
    linux::LinuxProcesses processes{applications};
    linux::LinuxLauncher launcher;
    linux::LinuxDates dates;
};

HostPlatform::HostPlatform() : parts_(new Parts) {
    parts_->bundles.addLoaded(linux::loadRuntime(parts_->files));
    parts_->toolkit.setApplicationLister([&applications = parts_->applications] {
        std::vector<qt::ChoosableApplication> choosable;
        for (const linux::InstalledApplication& application : applications.installedApplications())
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
