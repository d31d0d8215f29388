// Everything that a host hands to a pane. The referred objects outlive the pane.
#pragma once

#include "platform/Applications.h"
#include "platform/Bundle.h"
#include "platform/DateFormatter.h"
#include "platform/Documents.h"
#include "platform/Expressions.h"
#include "platform/FileServices.h"
#include "platform/InterfaceToolkit.h"
#include "platform/Launcher.h"
#include "platform/Log.h"
#include "platform/Notifications.h"
#include "platform/PreferencePane.h"
#include "platform/Preferences.h"
#include "platform/Processes.h"
#include "platform/RunLoop.h"
#include "platform/SystemServices.h"

namespace platform {

struct Platform {
    Bundle& paneBundle;
    PaneHost& host;
    PreferenceService& preferences;
    DistributedNotificationCenter& notifications;
    BundleServices& bundles;
    FileServices& files;
    ApplicationServices& applications;
    SystemServices& system;
    RunLoop& runLoop;
    InterfaceToolkit& toolkit;
    Log& log;
    ProcessServices& processes;
    Launcher& launcher;
    DateFormatter& dates;
    DocumentServices& documents;
    ExpressionServices& expressions;
};

}  // namespace platform
