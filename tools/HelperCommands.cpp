#include "tools/HelperCommands.h"

#include "settings/EntryList.h"
#include "tools/HeadlessPane.h"
#include "tools/Json.h"
#include "tools/Localized.h"
#include "tools/Output.h"

#include <chrono>
#include <thread>

using namespace platform;

namespace tools {
namespace {

constexpr int kNotRunning = 1;
constexpr std::chrono::milliseconds kLongestFarewell(5000), kPause(10);

std::optional<ProcessID> runningHelper(HeadlessPane& pane) {
    ProcessSerialNumber psn;
    bool isRunning = pane.operations().findProcessByID_withPSN(settings::kSettingsDomain, psn);
    return isRunning ? std::optional<ProcessID>(psn.low) : std::nullopt;
}

std::string runningText(ProcessID process) { return localizedFormat("running, process %d", process) + "\n"; }

void start(bool) {
    HeadlessPane pane;
    pane.operations().launchTSDaemon();
    std::optional<ProcessID> process = runningHelper(pane);
    if (!process) throw refused("the helper could not be started");
    print(runningText(*process));
}

// The pane waits for nothing; a script that goes on wants it gone.
void stop(bool) {
    HeadlessPane pane;
    pane.operations().killTSDaemon();
    const auto end = std::chrono::steady_clock::now() + kLongestFarewell;
    while (runningHelper(pane)) {
        if (std::chrono::steady_clock::now() > end) throw refused("the helper was asked to quit and is still running");
        std::this_thread::sleep_for(kPause);
    }
}

void status(bool json) {
    HeadlessPane pane;
    std::optional<ProcessID> process = runningHelper(pane);
    if (json) {
        MutableDictionary all;
        all.set("running", process.has_value());
        if (process) all.set("process", *process);
        print(jsonText(std::move(all).freeze(), JsonLayout::Indented) + "\n");
    } else {
        print(process ? runningText(*process) : localized("not running") + "\n");
    }
    if (!process) throw CLI::RuntimeError(kNotRunning);
}

}  // namespace

void addHelperCommands(CLI::App& app) {
    auto* helper = app.add_subcommand("helper", localized("Start and stop the helper that takes in changed settings"));
    helper->require_subcommand(1);
    auto json = std::make_shared<bool>(false);
    auto command = [&](const char* name, const std::string& description, void (*run)(bool)) {
        auto* added = helper->add_subcommand(name, description);
        added->callback([json, run] { run(*json); });
        return added;
    };
    command("start", localized("Start the helper unless it is running"), start);
    command("stop", localized("Ask the helper to quit, and wait until it has"), stop);
    command("status", localized("Tell whether the helper is running; status 1: it is not"), status)
        ->add_flag("--json", *json, localized("As JSON"));
}

}  // namespace tools
