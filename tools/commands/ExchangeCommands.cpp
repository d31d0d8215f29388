// Entries written to files and taken from them.
#include "entrylist/DifferenceWords.h"
#include "entrylist/EntryAddress.h"
#include "entrylist/Exchange.h"
#include "linux/LinuxMachine.h"
#include "linux/documents/LinuxDocuments.h"
#include "linux/texts/DisplayText.h"
#include "linux/texts/TextColumns.h"
#include "platform/Localizable.h"
#include "settings/EntryList.h"
#include "tools/EntryListing.h"
#include "tools/Input.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/Refusal.h"
#include "tools/StoredDomain.h"
#include "tools/UsageTexts.h"
#include "tools/commands/Commands.h"
#include "tools/headless/HeadlessPane.h"

#include <span>

using namespace entrylist;
using namespace platform;
using namespace settings;

namespace tools {
namespace {

constexpr const char* kOurs = "ours";
constexpr const char* kTheirs = "theirs";

struct Arguments {
    std::vector<std::string> words;  // of export: rows, then the file
    CLI::Option* fileOption = nullptr;
    std::string file;
    std::optional<std::string> merge;
    bool all = false, replaces = false, isDry = false, json = false;
};

std::vector<PropertyList> storedEntries() {
    linux::LinuxStore store;
    requireReadable(store.preferences, kSettingsDomain);
    return repairedList(store.preferences.copyValue(kEntryListKey, kSettingsDomain));
}

std::size_t rowOf(const std::string& word, std::span<const PropertyList> list) {
    const auto address = entryAddress(word);
    if (!address)
        throw CLI::ValidationError("INDEX", localized("not a row, nor id:IDENTIFIER, path:PATH or name:NAME"));
    return rowAt(*address, list);
}

void exportEntries(const Arguments& arguments) {
    if (arguments.words.empty()) {
        arguments.fileOption->required();
        throw CLI::RequiredError("FILE");
    }
    const std::string& file = arguments.words.back();
    const std::vector<PropertyList> list = storedEntries();
    std::vector<std::size_t> rows;
    for (auto word = arguments.words.begin(); word + 1 != arguments.words.end(); ++word)
        rows.push_back(rowOf(*word, list));
    if (arguments.all == !rows.empty()) throw refused("either the rows of entries are given, or --all");
    const PropertyList document = arguments.all ? exchangeDocument(list) : exchangeDocument(list, rows);
    if (const ExchangeProblem problem = problemOf(document))
        throw refused("nothing was exported: %@", problem.text(localized));
    if (!isStandardOutput(file)) {
        std::string problem = linux::LinuxDocuments().write(file, document);
        return problem.empty() ? void() : throw Refusal(std::move(problem));
    }
    auto form = arguments.json ? linux::DocumentForm::JSON : linux::DocumentForm::XML;
    std::optional<std::string> text = linux::documentText(document, form);
    if (!text) throw refused("an entry holds a text that XML has no way to write; --json has");
    print(*text);
}

PropertyList documentFrom(const std::string& file) {
    const DocumentServices::Document document =
        file == kStandardStream ? linux::documentIn(readInput(file, kLargestExchangeFile), localized("standard input"))
                                : linux::LinuxDocuments().read(file, kLargestExchangeFile);
    if (!document.value) throw Refusal(document.problem);
    return document.value;
}

std::string nameOf(const PropertyList& entry) { return linux::displayText(entry[kNameKey].stringValue()); }

std::string differenceOf(const ImportItem& item) {
    EntryWords words;
    words.option = [](const Option& option) { return std::string(option.key); };
    words.value = [](const Option& option, std::int64_t value) {
        return option.type != OptionType::Boolean ? std::to_string(value) : value ? "true" : "false";
    };
    words.localized = localized;
    return item.mine ? linux::displayText(differenceInWords(item.mine, item.theirs, words)) : std::string();
}

// What becomes of an item of the plan.
const char* actionOn(const ImportItem& item, const Arguments& arguments) {
    if (item.action == ImportAction::Added) return localizable("added");
    if (item.action == ImportAction::Left) return localizable("left");
    if (arguments.replaces) return localizable("replaced");
    if (!arguments.merge) return localizable("conflict");
    return *arguments.merge == kTheirs ? localizable("replaced") : localizable("kept");
}

void printPlan(const ImportPlan& plan, const ImportOutcome& outcome, const Arguments& arguments) {
    std::vector<std::vector<std::string>> rows{
        {localized("ACTION"), localized("TYPE"), localized("NAME"), localized("DATA"), localized("DIFFERENCE")}};
    auto addRow = [&](const char* action, const PropertyList& entry, const std::string& difference) {
        rows.push_back({localized(action), linux::displayText(entry[kTypeKey].stringValue()), nameOf(entry),
                        linux::displayText(bytesKept(entry[kDataKey])), difference});
    };
    for (const ImportItem& item : plan.items) addRow(actionOn(item, arguments), item.theirs, differenceOf(item));
    if (arguments.replaces)
        for (const PropertyList& entry : plan.removed) addRow(localizable("removed"), entry, {});
    std::string text = rows.size() > 1 ? linux::tableText(rows) + "\n" : std::string();
    if (!plan.repeated.empty())
        text += localizedFormat("Passed over, as they repeat an earlier entry of the file: %d.", plan.repeated.size()) +
                "\n";
    print(text + outcomeInWords(outcome, localized) + "\n");
}

void printPlanAsJson(const ImportPlan& plan, const ImportOutcome& outcome, const Arguments& arguments) {
    std::vector<PropertyList> entries, repeated(plan.repeated.begin(), plan.repeated.end());
    auto add = [&](const char* action, const PropertyList& theirs, const PropertyList& mine) {
        MutableDictionary entry;
        entry.set("Action", action);
        entry.set("Theirs", theirs);
        entry.set("Mine", mine);
        entries.push_back(std::move(entry).freeze());
    };
    for (const ImportItem& item : plan.items) add(actionOn(item, arguments), item.theirs, item.mine);
    if (arguments.replaces)
        for (const PropertyList& entry : plan.removed) add("removed", {}, entry);
    printJson(PropertyList::dictionary({{"Stored", !arguments.isDry},
                                        {"Added", outcome.added},
                                        {"Replaced", outcome.replaced},
                                        {"Left", outcome.left},
                                        {"Removed", outcome.removed},
                                        {"Repeated", PropertyList::array(std::move(repeated))},
                                        {"Entries", PropertyList::array(std::move(entries))}}));
}

// Throws the refusal of conflicts that nobody has decided.
void refuseUndecided(const ImportPlan& plan, const Arguments& arguments) {
    const std::size_t conflicts = plan.count(ImportAction::Replaced);
    if (arguments.merge || arguments.replaces || conflicts == 0) return;
    std::vector<std::string> lines{localizedFormat(
        "entries in the list with other settings: %d; --merge ours, --merge theirs or --replace decides", conflicts)};
    for (const ImportItem& item : plan.items)
        if (item.action == ImportAction::Replaced)
            lines.push_back(formatted(
                "%@ (%@): %@",
                {nameOf(item.theirs), linux::displayText(bytesKept(item.theirs[kDataKey])), differenceOf(item)}));
    throw Refusal(std::move(lines));
}

// What the plan would make of a copy of the list that it was made for.
ImportOutcome outcomeOf(const ImportPlan& plan, const ImportDecisions& decisions, std::vector<PropertyList> list) {
    return applyImport(plan, decisions, list);
}

void importEntries(const Arguments& arguments) {
    if (arguments.merge && arguments.replaces) throw refused("--merge and --replace exclude each other");
    const PropertyList document = documentFrom(arguments.file);
    ImportDecisions decisions;
    if (arguments.merge && *arguments.merge == kTheirs) decisions.mode = ImportMode::TakeTheirs;
    if (arguments.replaces) decisions.mode = ImportMode::ReplaceList;
    auto show = arguments.json ? printPlanAsJson : printPlan;
    const std::vector<PropertyList> now = storedEntries();
    ImportPlan plan = planImport(document, now);
    if (plan.problem) throw Refusal(linux::displayText(arguments.file) + ": " + plan.problem.text(localized));
    if (arguments.isDry) {
        show(plan, outcomeOf(plan, decisions, now), arguments);
        return refuseUndecided(plan, arguments);
    }
    refuseUndecided(plan, arguments);
    ImportOutcome outcome;
    HeadlessPane pane;
    pane.changeList([&](std::vector<PropertyList>& list) {
        plan = planImport(document, list);
        refuseUndecided(plan, arguments);
        outcome = applyImport(plan, decisions, list);
    });
    pane.finish();
    show(plan, outcome, arguments);
}

}  // namespace

void addExchangeCommands(CLI::App& entries) {
    CommandGroup<Arguments> group(entries);
    auto* exporting = group.add("export", localized("Write entries into a file that import takes"), exportEntries);
    exporting->add_option("INDEX", group->words,
                          localized("Row, as list numbers them (0 is the Global entry), or id:IDENTIFIER, path:PATH or "
                                    "name:NAME"));
    group->fileOption = exporting->add_option(
        "FILE", group->file, localized("File to write, JSON if its name ends in .json; - for standard output"));
    exporting->add_flag("--all", group->all, localized("The whole list"));
    exporting->add_flag("--json", group->json, localized("JSON on standard output, too"));

    auto* importing = group.add("import", localized("Take entries from a file that export has written"), importEntries);
    importing->add_option("FILE", group->file, localized("File to read, - for standard input; its form is recognised"))
        ->required();
    importing
        ->add_option("--merge", group->merge,
                     localized("Of entries that are in the list with other settings, keep ours or take theirs"))
        ->check(oneOf({kOurs, kTheirs}))
        ->type_name("WHICH");
    importing->add_flag("--replace", group->replaces, localized("The list becomes what the file has, in its order"));
    importing->add_flag("--dry-run", group->isDry, localized("Only show what would be done"));
    importing->add_flag("--json", group->json, localized("Show it as JSON, with every key"));
}

}  // namespace tools
