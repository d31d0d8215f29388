#include "tools/commands/Commands.h"

#include "host/helper/HelperLock.h"
#include "settings/EntryList.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/headless/HeadlessPane.h"

#include <chrono>
#include <cstring>
#include <thread>

using namespace platform;

namespace tools {
namespace {

constexpr int kNotRunning = 1;
constexpr std::chrono::milliseconds kLongestWait(5000), kPause(10);

struct Arguments {
    bool json = false;
};

std::optional<ProcessID> runningHelper(HeadlessPane& pane) {
    ProcessSerialNumber psn;
    bool isRunning = pane.operations().findProcessByID_withPSN(settings::kSettingsDomain, psn);
    return isRunning ? std::optional<ProcessID>(psn.low) : std::nullopt;
}

Refusal notStarted(const helper::HelperLockState& lock, std::optional<ProcessID> process) {
    if (process) return refused("the helper, process %d, does not answer", *process);
    if (lock.holder.process)
        return refused("the helper could not be started: %@, process %d, holds its lock %@",
                       linux::withVisibleControls(lock.holder.program), lock.holder.process,
                       linux::withVisibleControls(lock.path));
    return refused("the helper could not be started");
}

std::string runningText(ProcessID process) { return localizedFormat("running, process %d", process); }

// One that cannot have the lock leaves at once, and only the lock tells.
void start(const Arguments&) {
    HeadlessPane pane;
    if (const auto lock = helper::helperLockState(); lock.holder.process && !runningHelper(pane))
        throw notStarted(lock, {});
    pane.operations().launchTSDaemon();
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    for (;;) {
        const helper::HelperLockState lock = helper::helperLockState();
        if (lock.error)
            throw refused("the helper could not be started: %@: %@", linux::withVisibleControls(lock.path),
                          std::strerror(lock.error));
        const std::optional<ProcessID> process = runningHelper(pane);
        if (lock.isReady && process == lock.holder.process) return printLine(runningText(*process));
        if (std::chrono::steady_clock::now() > end) throw notStarted(lock, process);
        std::this_thread::sleep_for(kPause);
    }
}

// The pane waits for nothing; a script that goes on wants it gone.
void stop(const Arguments&) {
    HeadlessPane pane;
    pane.operations().killTSDaemon();
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    while (runningHelper(pane)) {
        if (std::chrono::steady_clock::now() > end) throw refused("the helper was asked to quit and is still running");
        std::this_thread::sleep_for(kPause);
    }
}

void status(const Arguments& arguments) {
    HeadlessPane pane;
    std::optional<ProcessID> process = runningHelper(pane);
    if (arguments.json) {
        MutableDictionary all;
        all.set("running", process.has_value());
        if (process) all.set("process", *process);
        printJson(std::move(all).freeze());
    } else {
        printLine(process ? runningText(*process) : localized("not running"));
    }
    if (!process) throw CLI::RuntimeError(kNotRunning);
}

}  // namespace

void addHelperCommands(CLI::App& app) {
    CommandGroup<Arguments> helper(app, "helper",
                                   localized("Start and stop the helper that takes in changed settings"));
    helper.add("start", localized("Start the helper unless it is running"), start);
    helper.add("stop", localized("Ask the helper to quit, and wait until it has"), stop);
    helper.add("status", localized("Tell whether the helper is running; status 1: it is not"), status)
        ->add_flag("--json", helper->json, localized("As JSON"));
}

}  // namespace tools
