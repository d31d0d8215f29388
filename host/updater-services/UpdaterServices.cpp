// The machine's services for processes that call the update checker by its C functions: they load this private
// framework of the pane's bundle and hand what it gives to TWVC_SetServices. docs/updates.md shows a caller.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/TWVC.h"
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateServices.h"
#include "linux/LinuxMachine.h"

namespace {

struct Services : linux::LinuxMachine {
    twvc::UpdateServices services = twvc::UpdateServices::of(*this);
};

}  // namespace

// Lives as long as the process.
extern "C" TWVC_EXPORT const TWVCServices* TWVC_MachineServices(void) {
    static auto* sServices = new Services;
    return reinterpret_cast<const TWVCServices*>(&sServices->services);
}
