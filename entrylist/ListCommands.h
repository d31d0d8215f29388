// What a user can do with the entry list beyond adding and removing: undo and redo, duplicate an entry, copy and paste
// settings, take over Global's, and carry a change of Global to the entries that still have the old value.
//
// Every change goes through the pane, which saves it, tells others and hands back what it was: so each is a step.
#pragma once

#include "entrylist/History.h"
#include "entrylist/ListOwner.h"
#include "platform/Outlet.h"
#include "platform/Platform.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace entrylist {

class ListCommands {
public:
    // Both outlive it.
    ListCommands(const platform::Platform& platform, ListOwner& owner) : platform_(platform), owner_(owner) {}

    // False for names that are not its own.
    bool setOutlet(std::string_view name, platform::View& object);
    bool performAction(std::string_view selector);

    // Each change of the list that is made in the window, once it is stored.
    void record(SharedEdits edits);
    // Which commands can be used now, with another entry shown than before.
    void showWhatCanBeDone();
    void useGlobals(std::span<const settings::Option> options);
    // The sentence with a button that takes the last step back.
    platform::ActionMessage withUndo(std::string sentence);

private:
    void undo() { step(History::Direction::Undo); }
    void redo() { step(History::Direction::Redo); }
    void step(History::Direction direction);
    void tellOf(const ListEdits& edits);
    void tellOfConflicts(const std::vector<Conflict>& conflicts);
    void offerToCarry(const platform::PropertyList& before, const platform::PropertyList& after);
    void carry(const settings::Option& option, std::int64_t old, const List& entries);
    void duplicate();
    void copySettings();
    void pasteSettings();
    void useAllOfGlobal() { useGlobals(settings::options()); }
    void changeShown(const std::function<platform::PropertyList(const List&, const platform::PropertyList&)>& change);
    std::string nameOf(const settings::Option& option);
    std::string localized(std::string_view key) const { return platform_.paneBundle.localizedString(key); }

    const platform::Platform& platform_;
    ListOwner& owner_;
    History history_;
    std::optional<History::Direction> going_;  // while a step is taken
    bool wasRecorded_ = false;
    Outlet<platform::Button> undoAction_, redoAction_, duplicateAction_, pasteAction_, useGlobalAction_;
};

}  // namespace entrylist
