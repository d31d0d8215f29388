#include "tools/commands/Commands.h"

#include "linux/LinuxMachine.h"
#include "linux/preferences/DomainWatch.h"
#include "linux/texts/DisplayText.h"
#include "settings/EntryList.h"
#include "tools/AbsolutePath.h"
#include "tools/EntryListing.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/Refusal.h"
#include "tools/StoredDomain.h"
#include "tools/UsageTexts.h"
#include "tools/headless/HeadlessPane.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <iterator>

using namespace platform;
using namespace settings;

namespace tools {
namespace {

struct Arguments {
    int index = 0, kind = 0;
    std::string key, value, name, expression;
    std::optional<std::string> keyIfAny;
    std::vector<std::string> paths;
    bool json = false, watch = false;
};

std::vector<PropertyList> repaired(const PropertyList& values) {
    std::vector<PropertyList> list = mutableArray(values[kEntryListKey]);
    while (putGlobalFirst(list)) {
    }
    return list;
}

// False when nobody reads our output any more: there is nothing left to do.
bool waitForEvents(const linux::Descriptor& events) {
    pollfd waits[] = {{events.number(), POLLIN, 0}, {STDOUT_FILENO, 0, 0}};
    while (::poll(waits, std::size(waits), -1) < 0)
        if (errno != EINTR) return false;
    return !(waits[1].revents & (POLLERR | POLLHUP));
}

// As the pane would show it, but nothing is stored.
std::vector<PropertyList> shownEntries() {
    linux::LinuxStore store;
    requireReadable(store.preferences, kSettingsDomain);
    return repaired(store.preferences.copyDomain(kSettingsDomain));
}

void printEntries(std::vector<PropertyList> entries, bool json) {
    if (json) return printJson(PropertyList::array(std::move(entries)));
    print(entryTable(entries));
}

void list(const Arguments& arguments) {
    if (!arguments.watch) return printEntries(shownEntries(), arguments.json);
    linux::LinuxStore store;
    linux::DomainWatch watch(store.preferences, std::string(kSettingsDomain));
    if (!watch.events()) throw refused("%@ cannot be watched", linux::displayText(store.preferences.folder()));
    requireReadable(store.preferences, kSettingsDomain);
    std::vector<PropertyList> shown = repaired(watch.values());
    printEntries(shown, arguments.json);
    while (waitForEvents(watch.events())) {
        auto outcome = watch.takeIn();
        if (outcome == linux::DomainWatch::Outcome::Gone)
            throw refused("%@ has gone", linux::displayText(store.preferences.folder()));
        std::vector<PropertyList> now = repaired(watch.values());
        if (!store.preferences.isReadable(kSettingsDomain) || now == shown) continue;
        shown = std::move(now);
        if (!arguments.json) printLine("");
        printEntries(shown, arguments.json);
    }
}

PropertyList valueUnder(const PropertyList& entry, const std::string& key) {
    if (const Option* option = optionForKey(key)) return optionValue(*option, shownValue(entry[kSettingsKey], *option));
    return entry[key];
}

void get(const Arguments& arguments) {
    std::vector<PropertyList> entries = shownEntries();
    if (arguments.index < 0 || arguments.index >= std::ssize(entries)) throw noEntry(arguments.index, entries.size());
    PropertyList value = entries[static_cast<std::size_t>(arguments.index)];
    if (arguments.keyIfAny) value = valueUnder(value, *arguments.keyIfAny);
    if (!value) throw refused("there is no option or key \"%@\"", linux::displayText(*arguments.keyIfAny));
    printJson(value);
}

void add(const Arguments& arguments) {
    std::vector<std::string> paths, problems;
    for (const std::string& path : arguments.paths) paths.push_back(absolutePath(path));
    HeadlessPane pane;
    HeadlessPane::Added added = pane.addApplications(paths);
    for (const std::string& path : added.alreadyListed)
        printLine(localizedFormat("%@ is in the list already", linux::displayText(path)));
    for (const std::string& path : added.noApplications)
        problems.push_back(localizedFormat("%@ is no application for this system", linux::displayText(path)));
    if (problems.size() < paths.size()) pane.finish();
    if (!problems.empty()) throw Refusal(std::move(problems));
}

void addRegex(const Arguments& arguments) {
    HeadlessPane pane;
    pane.addRegex(arguments.name, arguments.expression, arguments.kind);
    pane.finish();
}

void remove(const Arguments& arguments) {
    HeadlessPane pane;
    pane.removeEntry(arguments.index);
    pane.finish();
}

void set(const Arguments& arguments) {
    const Option* option = optionForKey(arguments.key);
    if (!option)
        throw refused("there is no option \"%@\"; entries set --help lists them", linux::displayText(arguments.key));
    std::optional<std::int64_t> value = optionValueFromText(*option, arguments.value);
    if (!value)
        throw refused("%@ takes %@, not \"%@\"", arguments.key, acceptedValues(*option),
                      linux::displayText(arguments.value));
    HeadlessPane pane;
    pane.setOption(arguments.index, *option, *value);
    pane.finish();
}

std::string optionHelp() {
    std::string text = localized("Options that KEY may name, and their values:") + "\n";
    for (const Option& option : options())
        text += "  " + std::string(option.key) + ": " + acceptedValues(option) + "\n";
    return text;
}

}  // namespace

void addEntriesCommands(CLI::App& app) {
    CommandGroup<Arguments> entries(app, "entries", localized("Show and change the list of entries"));
    auto takeIndex = [&](CLI::App* to) {
        to->add_option("INDEX", entries->index, localized("Entry, as list numbers them; 0 is the Global entry"))
            ->required()
            ->check(wholeNumber());
        return to;
    };

    auto* listing = entries.add("list", localized("Print the entries"), list);
    listing->add_flag("--json", entries->json, localized("As JSON, with every key"));
    listing->add_flag("--watch", entries->watch, localized("Print them again at each change, until Ctrl-C"));
    entries.add("add", localized("Add applications"), add)
        ->add_option("PATH", entries->paths, localized("Desktop file or .app folder"))
        ->required();
    auto* regex = entries.add("add-regex", localized("Add an entry for applications that a regular expression matches"),
                              addRegex);
    regex->add_option("NAME", entries->name, localized("Name of the entry"))->required();
    regex->add_option("EXPRESSION", entries->expression, localized("Regular expression"))->required();
    regex
        ->add_option("--kind", entries->kind,
                     localized("What it is held against: 0 name (default), 1 identifier, 2 path"))
        ->check(wholeNumber())
        ->type_name("N");
    takeIndex(entries.add("remove", localized("Remove an entry"), remove));
    auto* setting = takeIndex(entries.add("set", localized("Change an option of an entry"), set));
    setting->add_option("KEY", entries->key, localized("Option"))->required();
    setting->add_option("VALUE", entries->value, localized("Value"))->required();
    setting->footer(optionHelp());
    takeIndex(entries.add("get", localized("Print an entry, or one value of it, as JSON"), get))
        ->add_option("KEY", entries->keyIfAny,
                     localized("Option, shown even while it is not stored, or key of the entry"));
}

}  // namespace tools
