// The machine, put together once: what the programs of this project take their platform from.
#pragma once

#include "linux/applications/LinuxApplications.h"
#include "linux/documents/LinuxDocuments.h"
#include "linux/files/LinuxFiles.h"
#include "linux/loginitems/AutostartMirror.h"
#include "linux/preferences/DiskPreferences.h"
#include "linux/processes/LinuxLauncher.h"
#include "linux/processes/LinuxProcesses.h"
#include "linux/system/FolderBundle.h"
#include "linux/system/LinuxClock.h"
#include "linux/system/LinuxDates.h"
#include "linux/system/LinuxSystem.h"
#include "linux/system/SystemLog.h"
#include "platform/Platform.h"

namespace linux {

// The stored settings and the log alone: for programs that ask nothing else of the machine.
struct LinuxStore {
    SystemLog log;
    DiskPreferences preferences{preferencesFolder(), log};
};

// The runtime counts as loaded when it is installed. Everything lives as long as this object, on one thread. What was
// set in the preferences and not synchronised is not saved by its end.
struct LinuxMachine : LinuxStore {
    LinuxMachine();
    LinuxMachine(const LinuxMachine&) = delete;  // the members refer to each other

    // The platform of a pane, together with what only a host has; all of them outlive the pane.
    platform::Platform forPane(platform::Bundle& paneBundle, platform::PaneHost& host,
                               platform::DistributedNotificationCenter& notifications, platform::RunLoop& runLoop,
                               platform::InterfaceToolkit& toolkit, platform::ExpressionServices& expressions);

    AutostartMirror autostart{preferences, log};
    FolderBundles bundles;
    LinuxFiles files;
    LinuxApplications applications;
    LinuxSystem system;
    LinuxProcesses processes{applications};
    LinuxLauncher launcher;
    LinuxDates dates;
    LinuxDocuments documents;
    LinuxClock clock;
};

}  // namespace linux
