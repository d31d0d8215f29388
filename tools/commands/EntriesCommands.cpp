#include "tools/commands/Commands.h"

#include "entrylist/EntryToken.h"
#include "linux/LinuxMachine.h"
#include "linux/preferences/DomainWatch.h"
#include "linux/texts/DisplayText.h"
#include "settings/EntryList.h"
#include "tools/AbsolutePath.h"
#include "tools/EntryChanges.h"
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

using namespace entrylist;
using namespace platform;
using namespace settings;

namespace tools {
namespace {

struct Arguments {
    std::string entry;
    std::int64_t to = 0;
    std::string key, value, name, expression, copy;
    std::optional<int> kind;
    std::optional<std::string> keyIfAny, nameIfAny, token;
    std::vector<std::string> paths;
    bool json = false, watch = false, withToken = false;

    EntryAddress address() const { return *entryAddress(entry); }
};

std::vector<PropertyList> repaired(const PropertyList& values) { return repairedList(values[kEntryListKey]); }

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

void printEntries(std::vector<PropertyList> entries, const Arguments& arguments) {
    if (!arguments.json) return arguments.withToken ? printLine(tokenOf(entries)) : print(entryTable(entries));
    std::string token = tokenOf(entries);
    PropertyList list = PropertyList::array(std::move(entries));
    printJson(arguments.withToken ? PropertyList::dictionary({{"token", token}, {"entries", list}}) : list);
}

void list(const Arguments& arguments) {
    if (!arguments.watch) return printEntries(shownEntries(), arguments);
    linux::LinuxStore store;
    linux::DomainWatch watch(store.preferences, std::string(kSettingsDomain));
    if (!watch.events()) throw refused("%@ cannot be watched", linux::displayText(store.preferences.folder()));
    requireReadable(store.preferences, kSettingsDomain);
    std::vector<PropertyList> shown = repaired(watch.values());
    printEntries(shown, arguments);
    while (waitForEvents(watch.events())) {
        auto outcome = watch.takeIn();
        if (outcome == linux::DomainWatch::Outcome::Gone)
            throw refused("%@ has gone", linux::displayText(store.preferences.folder()));
        std::vector<PropertyList> now = repaired(watch.values());
        if (!store.preferences.isReadable(kSettingsDomain) || now == shown) continue;
        shown = std::move(now);
        if (!arguments.json && !arguments.withToken) printLine("");
        printEntries(shown, arguments);
    }
}

PropertyList valueUnder(const PropertyList& entry, const std::string& key) {
    if (const Option* option = optionForKey(key)) return optionValue(*option, shownValue(entry[kSettingsKey], *option));
    return entry[key];
}

void get(const Arguments& arguments) {
    std::vector<PropertyList> entries = shownEntries();
    PropertyList value = entries[rowAt(arguments.address(), entries)];
    if (arguments.keyIfAny) value = valueUnder(value, *arguments.keyIfAny);
    if (!value) throw refused("there is no option or key \"%@\"", linux::displayText(*arguments.keyIfAny));
    printJson(value);
}

// A pane for one change of the list that the arguments ask for.
class ChangingPane {
public:
    explicit ChangingPane(const Arguments& arguments) {
        if (arguments.token) pane_.requireUnchanged(*arguments.token);
    }
    HeadlessPane* operator->() { return &pane_; }

private:
    HeadlessPane pane_;
};

void changeEntry(const Arguments& arguments, EntryChange change) {
    ChangingPane pane(arguments);
    pane->changeEntry(arguments.address(), std::move(change));
    pane->finish();
}

const Option& optionNamed(const std::string& key) {
    const Option* option = optionForKey(key);
    if (!option) throw refused("there is no option \"%@\"; entries set --help lists them", linux::displayText(key));
    return *option;
}

void requireText(const std::string& text) {
    if (text.empty()) throw refused("neither the name nor the expression may be empty");
    if (!PropertyList(text)) throw refused("the name or the expression is not UTF-8");
}

int requireKind(int kind) {
    if (kind >= 0 && kind < kRegexKinds) return kind;
    throw refused("there is no kind %d; the last one is %d", kind, kRegexKinds - 1);
}

void add(const Arguments& arguments) {
    std::vector<std::string> paths, problems;
    for (const std::string& path : arguments.paths) paths.push_back(absolutePath(path));
    ChangingPane pane(arguments);
    HeadlessPane::Added added = pane->addApplications(paths);
    for (const std::string& path : added.alreadyListed)
        printLine(localizedFormat("%@ is in the list already", linux::displayText(path)));
    for (const std::string& path : added.noApplications)
        problems.push_back(localizedFormat("%@ is no application for this system", linux::displayText(path)));
    if (problems.size() < paths.size()) pane->finish();
    if (!problems.empty()) throw Refusal(std::move(problems));
}

void addRegex(const Arguments& arguments) {
    for (const std::string* text : {&arguments.name, &arguments.expression}) requireText(*text);
    const int kind = requireKind(arguments.kind.value_or(0));
    ChangingPane pane(arguments);
    pane->addRegex(arguments.name, arguments.expression, kind);
    pane->finish();
}

void remove(const Arguments& arguments) {
    ChangingPane pane(arguments);
    pane->removeEntry(arguments.address());
    pane->finish();
}

void set(const Arguments& arguments) {
    const Option& option = optionNamed(arguments.key);
    std::optional<std::int64_t> value = optionValueFromText(option, arguments.value);
    if (!value)
        throw refused("%@ takes %@, not \"%@\"", arguments.key, acceptedValues(option),
                      linux::displayText(arguments.value));
    ChangingPane pane(arguments);
    pane->setOption(arguments.address(), option, *value);
    pane->finish();
}

void unset(const Arguments& arguments) { changeEntry(arguments, unsetting(optionNamed(arguments.key))); }
void reset(const Arguments& arguments) { changeEntry(arguments, resetting()); }
void move(const Arguments& arguments) { changeEntry(arguments, moving(arguments.to)); }

void rename(const Arguments& arguments) {
    requireText(arguments.name);
    changeEntry(arguments, renaming(arguments.name));
}

void edit(const Arguments& arguments) {
    requireText(arguments.expression);
    if (arguments.kind) requireKind(*arguments.kind);
    changeEntry(arguments, editing(arguments.expression, arguments.kind));
}

void duplicate(const Arguments& arguments) {
    ChangingPane pane(arguments);
    const bool isExpression = arguments.nameIfAny || pane->isExpression(arguments.address());
    if (isExpression)
        for (const std::string& text : {arguments.copy, arguments.nameIfAny.value_or(arguments.copy)})
            requireText(text);
    pane->changeEntry(arguments.address(), isExpression ? duplicating(arguments.copy, arguments.nameIfAny)
                                                        : duplicating(pane->application(absolutePath(arguments.copy))));
    pane->finish();
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
        to->add_option("INDEX", entries->entry,
                       localized("Row, as list numbers them (0 is the Global entry), or id:IDENTIFIER, path:PATH or "
                                 "name:NAME"))
            ->required()
            ->check(entryName());
        return to;
    };
    auto takeKind = [&](CLI::App* to, const std::string& description) {
        to->add_option("--kind", entries->kind, description)->check(wholeNumber())->type_name("N");
    };
    auto addChange = [&](const char* name, const std::string& description, void (*run)(const Arguments&)) {
        CLI::App* change = entries.add(name, description, run);
        change
            ->add_option("--if-unchanged", entries->token,
                         localized("Refuse, with status 4, if the list is another than when list --token printed this"))
            ->type_name("TOKEN");
        return change;
    };

    auto* listing = entries.add("list", localized("Print the entries"), list);
    listing->add_flag("--json", entries->json, localized("As JSON, with every key"));
    listing->add_flag("--watch", entries->watch, localized("Print them again at each change, until Ctrl-C"));
    listing->add_flag("--token", entries->withToken,
                      localized("Print the list's token, with --json together with the entries"));
    takeIndex(entries.add("get", localized("Print an entry, or one value of it, as JSON"), get))
        ->add_option("KEY", entries->keyIfAny,
                     localized("Option, shown even while it is not stored, or key of the entry"));
    addChange("add", localized("Add applications"), add)
        ->add_option("PATH", entries->paths, localized("Desktop file or .app folder"))
        ->required();
    auto* regex =
        addChange("add-regex", localized("Add an entry for applications that a regular expression matches"), addRegex);
    regex->add_option("NAME", entries->name, localized("Name of the entry"))->required();
    regex->add_option("EXPRESSION", entries->expression, localized("Regular expression"))->required();
    takeKind(regex, localized("What it is held against: 0 name (default), 1 identifier, 2 path"));
    takeIndex(addChange("remove", localized("Remove an entry"), remove));
    auto* setting = takeIndex(addChange("set", localized("Change an option of an entry"), set));
    setting->add_option("KEY", entries->key, localized("Option"))->required();
    setting->add_option("VALUE", entries->value, localized("Value"))->required();
    setting->footer(optionHelp());
    takeIndex(addChange("unset", localized("Store an option of an entry no more"), unset))
        ->add_option("KEY", entries->key, localized("Option"))
        ->required();
    takeIndex(addChange("reset",
                        localized("Give an entry the options of the Global entry, or that one those of a "
                                  "new list"),
                        reset));
    takeIndex(addChange("move", localized("Move an entry"), move))
        ->add_option("TO", entries->to, localized("Row where it stands afterwards, from 1"))
        ->required()
        ->check(wholeNumber());
    takeIndex(addChange("rename", localized("Name an entry for an expression anew"), rename))
        ->add_option("NAME", entries->name, localized("Name of the entry"))
        ->required();
    auto* editing = takeIndex(addChange("edit", localized("Change the expression of an entry"), edit));
    editing->add_option("EXPRESSION", entries->expression, localized("Regular expression"))->required();
    takeKind(editing, localized("What it is held against: 0 name, 1 identifier, 2 path; as before by default"));
    auto* duplicating =
        takeIndex(addChange("duplicate", localized("Add an entry with the options of another"), duplicate));
    duplicating
        ->add_option("COPY", entries->copy,
                     localized("What it is for: an application's path, or an expression where "
                               "the other has one"))
        ->required();
    duplicating->add_option("--name", entries->nameIfAny, localized("Name of the entry, for an expression"))
        ->type_name("NAME");
}

}  // namespace tools
