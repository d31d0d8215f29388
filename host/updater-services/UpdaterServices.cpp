// The machine's services for processes that call the update checker by its C functions: they load this private
// framework of the pane's bundle and hand what it gives to TWVC_SetServices. docs/updates.md shows a caller.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/TWVC.h"
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateServices.h"
#include "linux/applications/LinuxApplications.h"
#include "linux/files/LinuxFiles.h"
#include "linux/preferences/DiskPreferences.h"
#include "linux/processes/LinuxLauncher.h"
#include "linux/processes/LinuxProcesses.h"
#include "linux/system/FolderBundle.h"
#include "linux/system/LinuxClock.h"
#include "linux/system/LinuxDates.h"
#include "linux/system/LinuxSystem.h"
#include "linux/system/RuntimeLoader.h"
#include "linux/system/SystemLog.h"

using namespace platform;

namespace {

struct Machine {
    linux::SystemLog log;
    linux::DiskPreferences preferences{linux::preferencesFolder(), log};
    linux::FolderBundles bundles;
    linux::LinuxFiles files;
    linux::LinuxApplications applications;
    linux::LinuxSystem system;
    linux::LinuxProcesses processes{applications};
    linux::LinuxLauncher launcher;
    linux::LinuxDates dates;
    linux::LinuxClock clock;
    twvc::UpdateServices services{bundles, preferences, files, system, processes, launcher, dates, clock, log};

    Machine() { bundles.addLoaded(linux::loadRuntime(files)); }
};

}  // namespace

// Lives as long as the process.
extern "C" TWVC_EXPORT const TWVCServices* TWVC_MachineServices(void) {
    static auto* sMachine = new Machine;
    return reinterpret_cast<const TWVCServices*>(&sMachine->services);
}
