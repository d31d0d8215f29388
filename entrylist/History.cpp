#include "entrylist/History.h"

#include <utility>

namespace entrylist {

void History::record(SharedEdits edits) {
    if (!edits || edits->empty()) return;
    undo_.push_back(std::move(edits));
    redo_.clear();
}

SharedEdits History::take(Direction direction) {
    Steps& from = steps(direction);
    if (from.empty()) return nullptr;
    SharedEdits edits = std::move(from.back());
    from.pop_back();
    return edits;
}

void History::recordOpposite(Direction taken, SharedEdits edits) {
    if (edits && !edits->empty())
        steps(taken == Direction::Undo ? Direction::Redo : Direction::Undo).push_back(std::move(edits));
}

}  // namespace entrylist
