#include "entrylist/ExchangePanel.h"

#include "entrylist/Outlets.h"
#include "propertylist/Format.h"
#include "settings/EntryList.h"

#include <memory>

using namespace platform;
using namespace settings;

namespace entrylist {
namespace {

constexpr int kPanelOK = 1;

List entriesAt(const std::vector<int>& rows, const PropertyList& list) {
    List entries;
    for (int row : rows)
        if (const PropertyList& entry = list[row]) entries.push_back(entry);
    return entries;
}

ImportRow::Group groupOf(ImportAction action) {
    switch (action) {
        case ImportAction::Added:
            return ImportRow::Group::Added;
        case ImportAction::Replaced:
            return ImportRow::Group::Conflict;
        case ImportAction::Left:
            break;
    }
    return ImportRow::Group::Left;
}

}  // namespace

bool ExchangePanel::performAction(std::string_view selector) {
    static constexpr NamedAction<ExchangePanel> kActions[] = {{"exportEntries:", &ExchangePanel::exportEntries},
                                                              {"importEntries:", &ExchangePanel::importEntries}};
    return performNamed(*this, kActions, selector);
}

void ExchangePanel::endWith(const ActionMessage& message) {
    busy_(false);
    platform_.host.say(message);
}

// The entries themselves are kept, not their rows: others may change the list while the sheets are open.
void ExchangePanel::exportEntries() {
    busy_(true);
    const PropertyList list = owner_.entries();
    std::vector<List> sets{mutableArray(list)};
    ChoiceRequest request{
        text("Export Entries"), text("Export…"), {formatted(text("All entries (%d)"), {list.size()})}};
    if (const auto shown = shownRows_()) {
        sets.push_back(entriesAt(*shown, list));
        request.choices.push_back(formatted(text("The entries that the list shows (%d)"), {sets.back().size()}));
    }
    if (const auto row = owner_.shown().find(list.elements())) {
        sets.push_back({list[*row]});
        request.choices.push_back(formatted(text("The selected entry, “%@”"), {nameOf(list[*row])}));
    }
    if (sets.size() == 1) return chooseFile(sets.front());
    platform_.toolkit.beginChoice(request, [this, sets = std::move(sets)](int choice) {
        choice >= 0 ? chooseFile(sets[static_cast<std::size_t>(choice)]) : cancel();
    });
}

void ExchangePanel::chooseFile(const List& entries) {
    const SavePanelRequest request{
        text("Export Entries"), text("Typeslate entries"), {{text("Property list"), "plist"}, {"JSON", "json"}}};
    platform_.toolkit.beginSavePanel(
        request, [this, entries](const std::string& path) { path.empty() ? cancel() : write(entries, path); });
}

void ExchangePanel::write(const List& entries, const std::string& path) {
    const PropertyList document = exchangeDocument(entries);
    if (const ExchangeProblem problem = problemOf(document))
        return endWith(
            {formatted(text("Nothing was exported: %@"), {problem.text([this](auto key) { return text(key); })})});
    const std::string problem = platform_.documents.write(path, document);
    if (!problem.empty()) return endWith({formatted(text("Nothing was exported: %@"), {problem})});
    endWith({formatted(text("Exported to %@, entries: %d."), {path, document[kEntriesKey].size()})});
}

void ExchangePanel::importEntries() {
    busy_(true);
    OpenPanelRequest request;
    request.title = text("Import Entries");
    request.prompt = text("Import…");
    request.allowedTypes = {"plist", "json"};
    platform_.toolkit.beginOpenPanel(request, [this](OpenPanel& panel, int returnCode) {
        const std::vector<std::string> files = panel.filenames();
        returnCode == kPanelOK && !files.empty() ? read(files.front()) : cancel();
    });
}

void ExchangePanel::read(const std::string& path) {
    const DocumentServices::Document document = platform_.documents.read(path, kLargestExchangeFile);
    if (!document.value) return endWith({formatted(text("Nothing was imported: %@"), {document.problem})});
    const ImportPlan plan = planImport(document.value, owner_.entries().elements());
    if (!plan.problem) return offer(plan, path);
    const std::string why = path + ": " + plan.problem.text([this](auto key) { return text(key); });
    endWith({formatted(text("Nothing was imported: %@"), {why})});
}

void ExchangePanel::offer(const ImportPlan& plan, const std::string& path) {
    ImportRequest request{path};
    if (!plan.repeated.empty())
        request.note =
            formatted(text("Passed over, as they repeat an earlier entry of the file: %d."), {plan.repeated.size()});
    const EntryWords inWords = words();
    for (const auto& [action, theirs, mine] : plan.items)
        request.rows.push_back(
            {groupOf(action), nameOf(theirs), mine ? differenceInWords(mine, theirs, inWords) : std::string()});
    for (const PropertyList& entry : plan.removed)
        request.rows.push_back({ImportRow::Group::Removed, nameOf(entry), {}});
    platform_.toolkit.beginImportSheet(std::move(request), [this, plan](const std::optional<ImportAnswer>& answer) {
        answer ? import(plan, *answer) : cancel();
    });
}

// The sheet's first rows are the items of the plan, in their order.
void ExchangePanel::import(const ImportPlan& plan, const ImportAnswer& answer) {
    ImportDecisions decisions{answer.replacesList ? ImportMode::ReplaceList : ImportMode::KeepMine, answer.takesTheirs};
    auto outcome = std::make_shared<ImportOutcome>();
    const bool isDone =
        owner_.changeEntries([plan, decisions, outcome](List& list) { *outcome = applyImport(plan, decisions, list); },
                             owner_.shown().entry());
    if (!isDone) return endWith({text("Nothing was imported: the stored entries cannot be read.")});
    endWith(withUndo_(outcomeInWords(*outcome, [this](auto key) { return text(key); })));
}

EntryWords ExchangePanel::words() const {
    EntryWords found;
    found.option = [this](const Option& option) {
        if (option.type == OptionType::Boolean) return owner_.controlOf(option).title();
        return text(option.type == OptionType::Choice ? "Duplicates" : "Font size in points");
    };
    found.value = [this](const Option& option, std::int64_t value) {
        if (option.type == OptionType::Boolean) return text(value ? "on" : "off");
        PopUpButton* menu = owner_.controlOf(option).asPopUpButton();
        const std::string title = menu ? menu->itemTitle(menuItem(value)) : std::string();
        return title.empty() ? std::to_string(value) : title;
    };
    found.localized = [this](std::string_view key) { return text(key); };
    return found;
}

std::string ExchangePanel::nameOf(const PropertyList& entry) const {
    if (hasType(entry, kGlobalType)) return text("Global Setting");
    const std::string_view name = entry[kNameKey].stringValue();
    return std::string(name.empty() ? bytesKept(entry[kDataKey]) : name);
}

}  // namespace entrylist
