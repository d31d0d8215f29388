#include "tools/commands/Commands.h"

#include "linux/LinuxMachine.h"
#include "settings/EntryList.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/StoredDomain.h"
#include "tools/UsageTexts.h"
#include "tools/headless/HeadlessPane.h"

using namespace platform;
using namespace settings;

namespace tools {
namespace {

struct Arguments {
    std::string state;
    bool json = false;
};

void setModule(bool isOn) {
    HeadlessPane pane;
    pane.setModule(isOn);
    pane.finish();
}

void enable(const Arguments&) { setModule(true); }
void disable(const Arguments&) { setModule(false); }

void log(const Arguments& arguments) {
    HeadlessPane pane;
    pane.setLogging(arguments.state == "on");
    pane.finish();
}

void status(const Arguments& arguments) {
    linux::LinuxStore store;
    requireReadable(store.preferences, kSettingsDomain);
    const bool isOn = !store.preferences.getBooleanValue(kDisabledKey, kSettingsDomain);
    const bool isLogging = store.preferences.getBooleanValue(kLogStuffKey, kSettingsDomain);
    if (arguments.json) return printJson(PropertyList::dictionary({{"enabled", isOn}, {"logging", isLogging}}));
    auto word = [](bool state) { return state ? localized("on") : localized("off"); };
    printLine("enabled: " + word(isOn) + "\nlogging: " + word(isLogging));
}

}  // namespace

void addPaneCommands(CLI::App& app) {
    CommandGroup<Arguments> group(app, "pane", localized("Switch the module and its logging on and off"));
    group.add("enable", localized("Switch the module on"), enable);
    group.add("disable", localized("Switch the module off"), disable);
    group.add("logging", localized("Switch the diagnostic log on or off"), log)
        ->add_option("STATE", group->state, localized("on or off"))
        ->required()
        ->check(oneOf({"on", "off"}));
    group.add("status", localized("Tell whether the module and its logging are on"), status)
        ->add_flag("--json", group->json, localized("As JSON"));
}

}  // namespace tools
