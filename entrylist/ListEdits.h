// What a change of the entry list has done, entry by entry, and taking it back from a list that others have changed
// meanwhile.
#pragma once

#include "platform/PlatformTypes.h"

#include <span>
#include <vector>

namespace entrylist {

using List = std::vector<platform::PropertyList>;

struct Edit {
    platform::PropertyList before;  // nothing: the entry was added
    platform::PropertyList after;   // nothing: it was removed
    std::size_t row = 0;            // of `after`; of a removed entry the row where it stood
    platform::PropertyList above;   // of a removed entry, the one above it; nothing: it was the first
};
using ListEdits = std::vector<Edit>;

// An entry that has moved was removed and added. Entries that are no more the same one, one for one in the same row,
// count as changed. Takes n log n steps at most for n entries that differ, and one comparison for each that does not.
ListEdits difference(std::span<const platform::PropertyList> before, std::span<const platform::PropertyList> after);

// Why an edit, or a part of it, could not be taken back.
struct Conflict {
    enum class Kind {
        Gone,     // what was added or changed is no more in the list
        Back,     // what was removed is in the list again
        Changed,  // another program has changed the same entry, or the same key of it
    };
    Kind kind;
    platform::PropertyList entry;
};

// Removes what was added, puts back what was removed, below the entry that it stood below, and gives the keys that were
// changed, of the entry or of its settings, the values that they had. Whatever has changed since, other entries and
// other keys, stays as it is: of that the conflicts tell. Takes linear time.
std::vector<Conflict> revert(const ListEdits& edits, List& list);

}  // namespace entrylist
