#include "entrylist/Exchange.h"

#include "entrylist/EntryIndex.h"
#include "propertylist/Format.h"
#include "settings/EntryList.h"

#include <algorithm>
#include <optional>
#include <utility>

using namespace platform;
using namespace settings;

namespace entrylist {
namespace {

// Of several alike the first.
EntryIndex firstRows(std::span<const PropertyList> list) {
    EntryIndex index({});
    for (std::size_t row = 0; row < list.size(); ++row)
        if (!index.find(list[row], row)) index.add(list[row], row);
    return index;
}

void repair(List& list) {
    while (putGlobalFirst(list)) {
    }
}

void countTaken(const PropertyList* mine, const PropertyList& theirs, ImportOutcome& outcome) {
    ++(!mine ? outcome.added : *mine == theirs ? outcome.left : outcome.replaced);
}

// The entries of a list in order that no item stands for. Without the Global entry in front: where the items have none,
// that one stays.
List othersIn(const List& list, std::span<const ImportItem> items) {
    std::vector<bool> isNamed(list.size());
    const EntryIndex rows = firstRows(list);
    for (const ImportItem& item : items)
        if (auto row = rows.find(item.theirs, 0)) isNamed[*row] = true;
    List others;
    for (std::size_t row = 1; row < list.size(); ++row)
        if (!isNamed[row]) others.push_back(list[row]);
    return others;
}

ImportOutcome replaceList(const ImportPlan& plan, List& list) {
    const EntryIndex rows = firstRows(list);
    ImportOutcome outcome;
    List result;
    for (const ImportItem& item : plan.items) {
        auto row = rows.find(item.theirs, 0);
        countTaken(row ? &list[*row] : nullptr, item.theirs, outcome);
        result.push_back(item.theirs);
    }
    const bool hasGlobal = std::ranges::any_of(result, [](const auto& entry) { return hasType(entry, kGlobalType); });
    if (!hasGlobal) result.insert(result.begin(), list.front());
    repair(result);
    outcome.removed = othersIn(list, plan.items).size();
    list = std::move(result);
    return outcome;
}

ImportOutcome merge(const ImportPlan& plan, const ImportDecisions& decisions, List& list) {
    const EntryIndex rows = firstRows(list);
    ImportOutcome outcome;
    for (std::size_t i = 0; i < plan.items.size(); ++i) {
        const auto& [action, theirs, planned] = plan.items[i];
        const bool wasConflict = action == ImportAction::Replaced;
        const bool isOtherwise = wasConflict && i < decisions.otherwise.size() && decisions.otherwise[i];
        const bool takesTheirs = (decisions.mode == ImportMode::TakeTheirs) != isOtherwise;
        auto row = rows.find(theirs, 0);
        if (row && !takesTheirs) {
            ++outcome.left;
        } else if (row || takesTheirs || !wasConflict) {
            countTaken(row ? &list[*row] : nullptr, theirs, outcome);
            row ? void(list[*row] = theirs) : list.push_back(theirs);
        }
    }
    return outcome;
}

}  // namespace

std::string ExchangeProblem::text(const Localizer& localized) const {
    const std::string why = propertylist::formatted(localized(reason), {number});
    return place.empty() ? why : place + ": " + why;
}

PropertyList exchangeDocument(std::span<const PropertyList> list, std::span<const std::size_t> rows) {
    List entries;
    for (std::size_t row : rows)
        if (row < list.size()) entries.push_back(list[row]);
    return exchangeDocument(entries);
}

PropertyList exchangeDocument(std::span<const PropertyList> list) {
    return PropertyList::dictionary({{kFormatKey, kExchangeFormat},
                                     {kVersionKey, kExchangeVersion},
                                     {kEntriesKey, PropertyList::array({list.begin(), list.end()})}});
}

std::size_t ImportPlan::count(ImportAction action) const {
    return static_cast<std::size_t>(std::ranges::count(items, action, &ImportItem::action));
}

ImportPlan planImport(const PropertyList& document, std::span<const PropertyList> list) {
    ImportPlan plan;
    plan.problem = problemOf(document);
    if (plan.problem) return plan;
    List present(list.begin(), list.end());
    repair(present);
    const auto entries = document[kEntriesKey].elements();
    const EntryIndex rows = firstRows(present), places = firstRows(entries);
    for (std::size_t place = 0; place < entries.size(); ++place) {
        const PropertyList& theirs = entries[place];
        if (places.find(theirs, 0) != place) {
            plan.repeated.push_back(place);
        } else if (auto row = rows.find(theirs, 0)) {
            const PropertyList& mine = present[*row];
            plan.items.push_back({mine == theirs ? ImportAction::Left : ImportAction::Replaced, theirs, mine});
        } else {
            plan.items.push_back({ImportAction::Added, theirs, {}});
        }
    }
    plan.removed = othersIn(present, plan.items);
    return plan;
}

ImportOutcome applyImport(const ImportPlan& plan, const ImportDecisions& decisions, List& list) {
    repair(list);
    return decisions.mode == ImportMode::ReplaceList ? replaceList(plan, list) : merge(plan, decisions, list);
}

std::string outcomeInWords(const ImportOutcome& outcome, const Localizer& localized) {
    std::string said = propertylist::formatted(localized("Added %d, replaced %d, left %d."),
                                               {outcome.added, outcome.replaced, outcome.left});
    if (outcome.removed > 0)
        said.append(" ").append(propertylist::formatted(localized("Removed %d."), {outcome.removed}));
    return said;
}

}  // namespace entrylist
