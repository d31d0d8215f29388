// The steps that undo and redo go along: changes of the entry list made in this window, the latest last.
#pragma once

#include "entrylist/ListEdits.h"

#include <memory>
#include <vector>

namespace entrylist {

// A change that waits to be saved may be made again, on what others have stored meanwhile: its edits are filled anew
// then, and count as they are when they are asked for.
using SharedEdits = std::shared_ptr<const ListEdits>;

class History {
public:
    enum class Direction { Undo, Redo };

    // A new change; what was undone before it cannot be redone any more. One that changed nothing is no step.
    void record(SharedEdits edits);
    // The next step in that direction, taken out; null when there is none.
    SharedEdits take(Direction direction);
    // What taking a step back has changed: the step in the other direction.
    void recordOpposite(Direction taken, SharedEdits edits);
    // A step that could not be taken.
    void putBack(Direction direction, SharedEdits edits) { steps(direction).push_back(std::move(edits)); }
    bool has(Direction direction) const { return !steps(direction).empty(); }

private:
    using Steps = std::vector<SharedEdits>;
    const Steps& steps(Direction direction) const { return direction == Direction::Undo ? undo_ : redo_; }
    Steps& steps(Direction direction) { return direction == Direction::Undo ? undo_ : redo_; }

    Steps undo_, redo_;
};

}  // namespace entrylist
