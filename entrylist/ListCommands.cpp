#include "entrylist/ListCommands.h"

#include "entrylist/Differences.h"
#include "entrylist/EntryIndex.h"
#include "entrylist/Outlets.h"
#include "propertylist/Codec.h"
#include "propertylist/Format.h"

#include <algorithm>

using namespace platform;
using namespace settings;

namespace entrylist {
namespace {

constexpr std::string_view kSettingsMediaType = "application/vnd.tarnwick.typeslate.settings+xml";
constexpr std::size_t kLargestClipping = 65536;  // bytes
constexpr std::size_t kNamesListed = 12;

bool isGlobal(const PropertyList& entry) { return hasType(entry, kGlobalType); }

// The options among the settings that have a value which they can have.
PropertyList optionsOf(const PropertyList& settings) {
    MutableDictionary values;
    for (const Option& option : options())
        if (settings[option.key].isNumber()) values.set(option.key, settings[option.key]);
    return std::move(values).freeze();
}

}  // namespace

bool ListCommands::setOutlet(std::string_view name, View& object) {
    static constexpr NamedOutlet<ListCommands> kOutlets[] = {
        {"undoAction", [](ListCommands& c, View& o) { c.undoAction_.connect(o); }},
        {"redoAction", [](ListCommands& c, View& o) { c.redoAction_.connect(o); }},
        {"duplicateAction", [](ListCommands& c, View& o) { c.duplicateAction_.connect(o); }},
        {"pasteAction", [](ListCommands& c, View& o) { c.pasteAction_.connect(o); }},
        {"useGlobalAction", [](ListCommands& c, View& o) { c.useGlobalAction_.connect(o); }},
    };
    return connectNamed(*this, kOutlets, name, object);
}

bool ListCommands::performAction(std::string_view selector) {
    static constexpr NamedAction<ListCommands> kActions[] = {
        {"undo:", &ListCommands::undo},
        {"redo:", &ListCommands::redo},
        {"duplicateEntry:", &ListCommands::duplicate},
        {"copySettings:", &ListCommands::copySettings},
        {"pasteSettings:", &ListCommands::pasteSettings},
        {"useGlobalSettings:", &ListCommands::useAllOfGlobal},
    };
    return performNamed(*this, kActions, selector);
}

void ListCommands::showWhatCanBeDone() {
    const PropertyList entry = owner_.shown().entry();
    const bool isOwn = entry.isDictionary() && !isGlobal(entry);
    undoAction_->setEnabled(history_.has(History::Direction::Undo));
    redoAction_->setEnabled(history_.has(History::Direction::Redo));
    duplicateAction_->setEnabled(isOwn);
    pasteAction_->setEnabled(entry.isDictionary());
    useGlobalAction_->setEnabled(isOwn && differs(entry, owner_.entries()[0]));
}

void ListCommands::record(SharedEdits edits) {
    wasRecorded_ = true;
    if (going_) return history_.recordOpposite(*going_, std::move(edits));
    history_.record(edits);
    tellOf(*edits);
}

// What can be taken back is found out first: a step of which nothing is left is no change, and nobody is told of one.
void ListCommands::step(History::Direction direction) {
    SharedEdits edits = history_.take(direction);
    if (!edits) return;
    const List before = mutableArray(owner_.entries());
    List after = before;
    const std::vector<Conflict> conflicts = revert(*edits, after);
    if (ListEdits changes = difference(before, after); !changes.empty()) {
        const Edit& first = changes.front();
        going_ = direction;
        wasRecorded_ = false;
        owner_.changeEntries([edits](List& list) { revert(*edits, list); }, first.after ? first.after : first.before);
        going_.reset();
        if (!wasRecorded_) history_.putBack(direction, edits);
    }
    showWhatCanBeDone();
    tellOfConflicts(conflicts);
}

ActionMessage ListCommands::withUndo(std::string sentence) {
    return {std::move(sentence), localized("Undo"), localized("Takes the last change of the list back"),
            [this] { undo(); }};
}

void ListCommands::tellOf(const ListEdits& edits) {
    if (edits.size() != 1) return;
    const Edit& edit = edits.front();
    if (edit.before && !edit.after)
        platform_.host.say(withUndo(formatted(localized("“%@” was removed."), {owner_.nameOf(edit.before)})));
    else if (isGlobal(edit.before) && isGlobal(edit.after))
        offerToCarry(edit.before, edit.after);
}

void ListCommands::tellOfConflicts(const std::vector<Conflict>& conflicts) {
    if (conflicts.empty()) return;
    const std::string sentences[] = {localized("Another program has removed “%@”."),
                                     localized("“%@” is in the list again."),
                                     localized("Another program has changed “%@” meanwhile; that stays.")};
    const Conflict& first = conflicts.front();
    std::string said = formatted(sentences[static_cast<std::size_t>(first.kind)], {owner_.nameOf(first.entry)});
    if (conflicts.size() > 1)
        said.append(" ").append(formatted(localized("And %d more could not be taken back."), {conflicts.size() - 1}));
    platform_.host.say({said});
}

std::string ListCommands::nameOf(const Option& option) {
    const std::string title = owner_.controlOf(option).title();
    if (!title.empty()) return title;
    return option.type == OptionType::Choice ? localized("Duplicates") : localized("Font size in points");
}

void ListCommands::offerToCarry(const PropertyList& before, const PropertyList& after) {
    auto hasChanged = [&](const Option& option) { return differs(before, after, option); };
    const auto option = std::ranges::find_if(options(), hasChanged);
    if (option == options().end() || std::any_of(option + 1, options().end(), hasChanged)) return;
    const std::int64_t old = shownValue(before[kSettingsKey], *option);
    const PropertyList entries = owner_.entries();
    List having;
    for (const PropertyList& entry : entries.elements())
        if (entry.isDictionary() && !isGlobal(entry) && shownValue(entry[kSettingsKey], *option) == old)
            having.push_back(entry);
    if (having.empty()) return;
    std::string names;
    for (std::size_t i = 0; i < std::min(having.size(), kNamesListed); ++i)
        names += (i > 0 ? ", " : "") + owner_.nameOf(having[i]);
    if (having.size() > kNamesListed) names += ", …";
    std::string said =
        formatted(localized("“%@” is still as before in %d entries: %@"), {nameOf(*option), having.size(), names});
    platform_.host.say({std::move(said), localized("Change There Too"),
                        localized("Gives these entries the new setting of Global"),
                        [this, option, old, having] { carry(*option, old, having); }});
}

void ListCommands::carry(const Option& option, std::int64_t old, const List& entries) {
    auto change = [&option, old, entries](List& list) {
        const EntryIndex index(list);
        for (const PropertyList& entry : entries) {
            auto row = index.find(entry, 0);
            if (row && shownValue(list[*row][kSettingsKey], option) == old)
                list[*row] = withOptionsOf(list[*row], list.front(), {&option, 1});
        }
    };
    if (owner_.changeEntries(std::move(change), owner_.shown().entry()))
        platform_.host.say(withUndo(formatted(localized("Changed in %d entries."), {entries.size()})));
}

void ListCommands::changeShown(const std::function<PropertyList(const List&, const PropertyList&)>& change) {
    const EntryIdentity target = owner_.shown();
    if (!target.entry().isDictionary()) return;
    owner_.changeEntries(
        [target, change](List& list) {
            if (auto row = target.find(list)) list[*row] = change(list, list[*row]);
        },
        target.entry());
}

void ListCommands::useGlobals(std::span<const Option> options) {
    changeShown([options](const List& list, const PropertyList& entry) {
        return isGlobal(entry) ? entry : withOptionsOf(entry, list.front(), options);
    });
}

void ListCommands::duplicate() {
    const PropertyList entry = owner_.shown().entry();
    if (entry.isDictionary() && !isGlobal(entry)) owner_.addLike(entry);
}

void ListCommands::copySettings() {
    const PropertyList settings = optionsOf(owner_.shown().entry()[kSettingsKey]);
    platform_.toolkit.setClipboard(kSettingsMediaType,
                                   propertylist::encodePropertyList(settings, propertylist::PropertyListFormat::XML));
}

void ListCommands::pasteSettings() {
    const std::string copied = platform_.toolkit.clipboard(kSettingsMediaType);
    const PropertyList decoded =
        copied.size() <= kLargestClipping ? propertylist::decodePropertyList(copied) : PropertyList();
    if (!decoded.isDictionary())
        return platform_.host.say({localized("There are no settings to paste; copy those of an entry first.")});
    const PropertyList pasted = PropertyList::dictionary({{kSettingsKey, optionsOf(decoded)}});
    changeShown([pasted](const List&, const PropertyList& entry) { return withOptionsOf(entry, pasted, options()); });
}

}  // namespace entrylist
