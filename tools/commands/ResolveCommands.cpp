#include "tools/commands/Commands.h"

#include "linux/LinuxMachine.h"
#include "linux/texts/DisplayText.h"
#include "linux/texts/TextColumns.h"
#include "platform/Localizable.h"
#include "reader/Rules.h"
#include "reader/StoredFile.h"
#include "reader/typeslate.h"
#include "settings/ApplicationEntry.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"
#include "tools/AbsolutePath.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/UsageTexts.h"

#include <algorithm>
#include <array>

using namespace platform;
using namespace settings;

namespace tools {
namespace {

constexpr int kWrongCall = 2;

struct Arguments {
    std::string application;
    std::optional<std::int64_t> process;
    std::string expression;
    int kind = 0;
    bool json = false;
};

struct Facts {
    std::string identifier, creator, path, name;

    reader::Application known() const { return {identifier, creator, path, name}; }
};

Facts factsOf(const ApplicationFacts& application) {
    return {application.identifier, creatorText(application.creator), application.path, application.name};
}

Facts factsAt(linux::LinuxApplications& applications, const std::string& path) {
    auto record = applications.applicationAtPath(path);
    if (!record) throw refused("%@ is no application", linux::displayText(path));
    return factsOf({record->identifier, record->creator, record->path, record->name});
}

// A file, or an identifier. Of an application that is not here its identifier is all that is known.
Facts factsNamed(linux::LinuxApplications& applications, const std::string& name) {
    bool isPath = name.find('/') != std::string::npos || name.ends_with(".desktop") || name.ends_with(".app");
    if (isPath) return factsAt(applications, absolutePath(name));
    auto path = applications.findApplication({.creator = {}, .identifier = name, .name = {}});
    return path ? factsAt(applications, *path) : Facts{.identifier = name, .creator = {}, .path = {}, .name = {}};
}

Facts factsOfProcess(linux::LinuxMachine& machine, std::int64_t process) {
    auto path = machine.processes.bundlePath(process);
    if (!path) throw refused("process %d runs no application that is known", process);
    return factsAt(machine.applications, *path);
}

constexpr std::array<std::string_view, 6> kReasons{"default", "global", "identifier", "creator", "path", "expression"};

std::string reasonInWords(const reader::Resolution& resolution) {
    constexpr std::array<std::string_view, 6> kFormats{
        localizable("no entry applies, and there is no Global entry: as in a new list%@"),
        localizable("no other entry applies%@"),
        localizable("names the identifier %@"),
        localizable("names the creator code %@"),
        localizable("names the path %@"),
        localizable("the first expression that matches: %@"),
    };
    bool isNamed = resolution.reason > reader::Reason::Global;
    return localizedFormat(kFormats[static_cast<std::size_t>(resolution.reason)],
                           isNamed ? linux::displayText(bytesKept(resolution.entry[kDataKey])) : std::string());
}

PropertyList optionsOf(const PropertyList& entry) {
    MutableDictionary values;
    for (std::size_t at = 0; at < options().size(); ++at)
        values.set(options()[at].key, optionValue(options()[at], reader::optionValue(entry, at)));
    return std::move(values).freeze();
}

PropertyList asJson(const Facts& facts, const reader::Resolution& resolution, bool isOn, bool applies) {
    return PropertyList::dictionary({
        {"application", PropertyList::dictionary({{"identifier", keptBytes(facts.identifier)},
                                                  {"creator", keptBytes(facts.creator)},
                                                  {"path", keptBytes(facts.path)},
                                                  {"name", keptBytes(facts.name)}})},
        {"row", resolution.row},
        {"name", resolution.entry[kNameKey]},
        {"reason", kReasons[static_cast<std::size_t>(resolution.reason)]},
        {"data", resolution.entry[kDataKey]},
        {"moduleOn", isOn},
        {"applies", applies},
        {"options", optionsOf(resolution.entry)},
    });
}

std::string inWords(const Facts& facts, const reader::Resolution& resolution, bool isOn, bool applies) {
    std::string name = linux::displayText(facts.name.empty() ? facts.identifier : facts.name);
    std::string entry = linux::displayText(resolution.entry[kNameKey].stringValue());
    std::string text = name + "\n";
    text += resolution.row < 0 ? reasonInWords(resolution)
                               : localizedFormat("entry %d, %@: %@", resolution.row, entry, reasonInWords(resolution));
    text += "\n";
    if (!isOn)
        text += localized("its menus are left alone: the module is off") + "\n";
    else if (!applies)
        text += localized("its menus are left alone: the entry is off") + "\n";
    std::vector<std::vector<std::string>> rows;
    for (std::size_t at = 0; at < options().size(); ++at) {
        int value = reader::optionValue(resolution.entry, at);
        bool isSwitch = options()[at].type == OptionType::Boolean;
        rows.push_back(
            {std::string(options()[at].key), isSwitch ? localized(value ? "on" : "off") : std::to_string(value)});
    }
    return text + linux::tableText(rows);
}

// By the same code that programs read with, which moves nothing aside.
reader::StoredFile readSettings() {
    reader::StoredFile file(linux::preferencesFolder() + "/" + std::string(kSettingsDomain) + ".plist",
                            reader::kLargestSettings);
    int status = file.refresh();
    if (status != TYPESLATE_OK && status != TYPESLATE_ABSENT)
        throw refused("%@: %@", linux::displayText(file.path()), localized(reader::statusText(status)));
    return file;
}

void resolve(const Arguments& arguments) {
    linux::LinuxMachine machine;
    if (arguments.application.empty() == !arguments.process)
        throw Refusal(localized("either an application or --pid is needed"), kWrongCall);
    Facts facts = arguments.process ? factsOfProcess(machine, *arguments.process)
                                    : factsNamed(machine.applications, arguments.application);
    reader::Rules rules(readSettings().values());
    reader::Resolution resolution = rules.resolve(facts.known());
    bool isOn = rules.isOn(), applies = isOn && reader::optionValue(resolution.entry, TYPESLATE_ENABLED);
    if (arguments.json) return printJson(asJson(facts, resolution, isOn, applies));
    print(inWords(facts, resolution, isOn, applies));
}

std::size_t charactersBefore(std::size_t position, std::string_view text) {
    auto begins = [](char unit) { return (static_cast<unsigned char>(unit) & 0xC0) != 0x80; };
    return static_cast<std::size_t>(std::ranges::count_if(text.substr(0, position), begins));
}

void test(const Arguments& arguments) {
    reader::ExpressionProblem problem;
    reader::Expression expression(arguments.expression, problem);
    if (!expression)
        throw refused("not an expression, at character %d: %@",
                      charactersBefore(problem.position, arguments.expression) + 1, localized(problem.reason));
    linux::LinuxMachine machine;
    std::vector<ApplicationFacts> all = machine.applications.allApplications();
    std::vector<std::vector<std::string>> rows{{localized("NAME"), localized("IDENTIFIER"), localized("PATH")}};
    std::vector<PropertyList> matches;
    for (const ApplicationFacts& application : all) {
        // The option takes no kind but those that there are.
        // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult)
        std::string_view subject = application.*factOfKind<ApplicationFacts>(arguments.kind);
        reader::Matching matching;
        reader::Expression::Answer answer = expression.search(subject, matching);
        if (answer == reader::Expression::Answer::GivenUp)
            throw refused("the expression takes too long: it was given up at %@", linux::displayText(subject));
        if (subject.empty() || answer == reader::Expression::Answer::No) continue;
        rows.push_back({linux::displayText(application.name), linux::displayText(application.identifier),
                        linux::displayText(application.path)});
        matches.push_back(PropertyList::dictionary({{"name", application.name},
                                                    {"identifier", keptBytes(application.identifier)},
                                                    {"path", keptBytes(application.path)}}));
    }
    if (arguments.json)
        return printJson(PropertyList::dictionary(
            {{"matches", PropertyList::array(std::move(matches))}, {"applications", all.size()}}));
    print(linux::tableText(rows) + localizedFormat("%d of %d applications", matches.size(), all.size()) + "\n");
}

}  // namespace

PropertyList entryOfApplication(const std::string& application) {
    linux::LinuxMachine machine;
    Facts facts = factsNamed(machine.applications, application);
    return reader::Rules(readSettings().values()).resolve(facts.known()).entry;
}

void addResolveCommand(CLI::App& app) {
    auto arguments = std::make_shared<Arguments>();
    auto* command = app.add_subcommand("resolve", localized("Tell which entry applies to an application, and why"));
    command->callback([arguments] { resolve(*arguments); });
    command->add_option("APPLICATION", arguments->application, localized("Desktop file, .app folder or identifier"));
    command->add_option("--pid", arguments->process, localized("Instead, the application that this process runs"))
        ->type_name("PROCESS")
        ->check(wholeNumber());
    command->add_flag("--json", arguments->json, localized("As JSON"));
}

void addExpressionCommands(CLI::App& entries) {
    CommandGroup<Arguments> group(entries);
    auto* command = group.add("test", localized("List the applications here that a regular expression matches"), test);
    command->add_option("EXPRESSION", group->expression, localized("Regular expression"))->required();
    command
        ->add_option("--kind", group->kind,
                     localized("What it is held against: 0 name (default), 1 identifier, 2 path"))
        ->check(oneOf({"0", "1", "2"}))
        ->type_name("N");
    command->add_flag("--json", group->json, localized("As JSON"));
}

}  // namespace tools
