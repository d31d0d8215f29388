#include "linux/LinuxMachine.h"

#include "linux/system/RuntimeLoader.h"

namespace linux {

using namespace platform;

LinuxMachine::LinuxMachine() { bundles.addLoaded(loadRuntime(files)); }

Platform LinuxMachine::forPane(Bundle& paneBundle, PaneHost& host, DistributedNotificationCenter& notifications,
                               RunLoop& runLoop, InterfaceToolkit& toolkit, ExpressionServices& expressions) {
    return {.paneBundle = paneBundle,
            .host = host,
            .preferences = preferences,
            .notifications = notifications,
            .bundles = bundles,
            .files = files,
            .applications = applications,
            .system = system,
            .runLoop = runLoop,
            .toolkit = toolkit,
            .log = log,
            .processes = processes,
            .launcher = launcher,
            .dates = dates,
            .documents = documents,
            .expressions = expressions};
}

}  // namespace linux
