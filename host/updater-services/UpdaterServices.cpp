// The machine's services for processes that call the update checker by its C functions: they load this private
// framework of the pane's bundle and hand what it gives to TWVC_SetServices. docs/updates.md shows a caller.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/TWVC.h"
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateServices.h"
#include "platform/linux/DiskPreferences.h"
#include "platform/linux/FolderBundle.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxDates.h"
#include "platform/linux/LinuxFiles.h"
#include "platform/linux/LinuxLauncher.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/LinuxSystem.h"
#include "platform/linux/RuntimeLoader.h"
#include "platform/linux/SystemLog.h"

using namespace platform;

namespace {

struct Machine {
    posix::SystemLog log;
    posix::DiskPreferences preferences{posix::preferencesFolder(), log};
    posix::FolderBundles bundles;
    LinuxFiles files;
    posix::LinuxApplications applications;
    posix::LinuxSystem system;
    posix::LinuxProcesses processes{applications};
    posix::LinuxLauncher launcher;
    posix::LinuxDates dates;
    posix::LinuxClock clock;
    twvc::UpdateServices services{bundles, preferences, files, system, processes, launcher, dates, clock, log};

    Machine() { bundles.addLoaded(posix::loadRuntime(files)); }
};

}  // namespace

// Lives as long as the process.
extern "C" TWVC_EXPORT const TWVCServices* TWVC_MachineServices(void) {
    static auto* sMachine = new Machine;
    return reinterpret_cast<const TWVCServices*>(&sMachine->services);
}
