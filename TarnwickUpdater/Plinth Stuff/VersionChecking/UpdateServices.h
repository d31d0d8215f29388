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

    // From a platform, whose run loop is a clock, or from anything else that has these members and one called `clock`.
    static UpdateServices of(const platform::Platform& platform) { return from(platform, platform.runLoop); }
    template <typename Machine>
        requires requires(Machine& machine) { machine.clock; }
    static UpdateServices of(Machine& machine) { return from(machine, machine.clock); }

private:
    template <typename Machine>
    static UpdateServices from(Machine& machine, platform::Clock& clock) {
        return {machine.bundles,  machine.preferences, machine.files, machine.system, machine.processes,
                machine.launcher, machine.dates,       clock,         machine.log};
    }
};

}  // namespace twvc
