// The module's helper application: finding it among the running processes, starting it, asking it to quit.
#include "pane/RunningProcess.h"
#include "pane/TSPreferencePane.h"

#include "settings/EntryList.h"

using namespace platform;

namespace {

// The helper's bundle identifier is the name of the settings domain.
constexpr std::string_view kHelperIdentifier = settings::kSettingsDomain;

}  // namespace

bool TSPreferencePane::findProcessByID_withPSN(std::string_view identifier, ProcessSerialNumber& psn) {
    auto found = findRunningProcess(platform_.processes, platform_.bundles, identifier);
    psn = found.value_or(ProcessSerialNumber());
    return found.has_value();
}

void TSPreferencePane::launchTSDaemon() {
    ProcessSerialNumber psn;
    if (findProcessByID_withPSN(kHelperIdentifier, psn)) return;
    // The program runs when the workspace's call returns, so the next search finds it.
    if (auto path = thisBundle.resourcePath("TS", "app")) platform_.applications.openApplication(*path);
}

void TSPreferencePane::killTSDaemon() {
    ProcessSerialNumber psn;
    if (findProcessByID_withPSN(kHelperIdentifier, psn)) platform_.processes.postQuitRequest(psn, kHelperIdentifier);
}
