// What the update checker needs of the platform.
#pragma once

#include "platform/Platform.h"

namespace twvc {

// The referred objects outlive their users.
struct UpdateServices {
    platform::BundleServices& bundles;
    platform::PreferenceService& preferences;
    platform::FileServices& files;
    platform::SystemServices& system;
    platform::ProcessServices& processes;
    platform::Launcher& launcher;
    platform::DateFormatter& dates;
    platform::Clock& clock;
    platform::Log& log;

    static UpdateServices of(const platform::Platform& platform) {
        return {platform.bundles,  platform.preferences, platform.files,   platform.system, platform.processes,
                platform.launcher, platform.dates,       platform.runLoop, platform.log};
    }
};

}  // namespace twvc
