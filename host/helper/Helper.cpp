// TS, the module's helper: it stays in the background of the user's session, takes in changes of the settings as they
// are stored, and leaves on SIGTERM, SIGINT or SIGHUP, when the session ends, and when the preferences folder goes.
// When an upgrade puts another program in its place it goes on as that one. While nothing happens it sleeps.
// docs/login-items.md tells more.
#include "host/helper/HelperLock.h"
#include "linux/LinuxMachine.h"
#include "linux/preferences/DomainWatch.h"
#include "linux/processes/ProcessFiles.h"
#include "linux/processes/ProcessHandle.h"
#include "linux/processes/ProgramWatch.h"
#include "linux/processes/SessionLeader.h"
#include "settings/EntryList.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

using namespace platform;
using namespace linux;
using namespace settings;

namespace {

// A background program keeps no terminal, pipe or mounted folder of whoever started it in use.
void letGoOfStarter() {
    const char* wish = std::getenv("TYPESLATE_LOG");
    bool isWatched = wish && std::string_view(wish) == "stderr";
    int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (nothing >= 0 && (stream != STDERR_FILENO || !isWatched)) ::dup2(nothing, stream);
    if (nothing > STDERR_FILENO) ::close(nothing);
    (void)!::chdir("/");
}

Descriptor endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals, signal);
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    return {FileAccess::system(), ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK)};
}

// The handle of the process that began the session; not valid where there is none.
Descriptor sessionHandle() {
    auto leader = sessionLeader();
    if (!leader) return {};
    auto before = startTicks(*leader);
    Descriptor handle = openProcess(*leader);
    return before && startTicks(*leader) == before ? std::move(handle) : Descriptor();
}

void logSettings(const DomainWatch& watch, Log& log) {
    const PropertyList& values = watch.values();
    if (!propertylist::coercedBoolean(values[kLogStuffKey])) return;
    log("[Typeslate] Took in the settings: %d entries, %s", values[kEntryListKey].size(),
        propertylist::coercedBoolean(values[kDisabledKey]) ? "disabled" : "enabled");
}

// poll() passes over descriptors below 0.
void takeInUntilTheEnd(DomainWatch& watch, Log& log, const Descriptor& signals, const Descriptor& session,
                       const ProgramWatch& program) {
    for (;;) {
        pollfd waits[] = {{watch.events().number(), POLLIN, 0},
                          {signals.number(), POLLIN, 0},
                          {session.number(), POLLIN, 0},
                          {program.events().number(), POLLIN, 0}};
        if (::poll(waits, std::size(waits), -1) < 0 && errno != EINTR) return;
        if (waits[1].revents || waits[2].revents) return;
        if (waits[3].revents && program.isReplaced()) program.startAnew();
        if (!waits[0].revents) continue;
        DomainWatch::Outcome outcome = watch.takeIn();
        if (outcome == DomainWatch::Outcome::Gone) return;
        if (outcome == DomainWatch::Outcome::Changed) logSettings(watch, log);
    }
}

}  // namespace

int main() {
    const ProgramWatch program;
    Descriptor signals = endSignals();
    letGoOfStarter();
    LinuxStore store;
    Descriptor lock = helper::takeHelperLock();
    if (lock.error() == EWOULDBLOCK) return EXIT_SUCCESS;
    if (!lock) {
        store.log("[Typeslate] The helper cannot take its lock: %s", std::strerror(lock.error()));
        return EXIT_FAILURE;
    }
    Descriptor session = sessionHandle();
    DomainWatch watch(store.preferences, std::string(kSettingsDomain));
    if (!watch.events()) {
        store.log("[Typeslate] The helper cannot watch %@", store.preferences.folder());
        return EXIT_FAILURE;
    }
    helper::sayReady(lock);
    logSettings(watch, store.log);
    takeInUntilTheEnd(watch, store.log, signals, session, program);
    return EXIT_SUCCESS;
}
