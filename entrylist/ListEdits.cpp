#include "entrylist/ListEdits.h"

#include "entrylist/EntryIndex.h"
#include "settings/EntryList.h"

#include <algorithm>
#include <map>
#include <utility>

using platform::MutableDictionary;
using platform::PropertyList;
using settings::kSettingsKey;

namespace entrylist {
namespace {

using Rows = std::span<const PropertyList>;
constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// For each entry of `after` the row that it had in `before`; of several alike the first, second and so on belong
// together.
std::vector<std::size_t> formerRows(Rows before, Rows after) {
    EntryIndex index(before);
    std::vector<std::size_t> former;
    for (const PropertyList& entry : after) {
        former.push_back(index.find(entry, 0).value_or(kNone));
        if (former.back() != kNone) index.remove(entry, former.back());
    }
    return former;
}

// Which of the entries have kept their order among each other: as many as possible.
std::vector<bool> longestRisingPart(const std::vector<std::size_t>& former) {
    std::vector<std::size_t> ends;  // of the rising parts of each length, the one that ends lowest
    std::vector<std::size_t> previous(former.size(), kNone);
    for (std::size_t i = 0; i < former.size(); ++i) {
        if (former[i] == kNone) continue;
        auto at = std::ranges::lower_bound(ends, former[i], {}, [&](std::size_t end) { return former[end]; });
        if (at != ends.begin()) previous[i] = *std::prev(at);
        if (at == ends.end())
            ends.push_back(i);
        else
            *at = i;
    }
    std::vector<bool> isIn(former.size());
    for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = previous[i]) isIn[i] = true;
    return isIn;
}

struct Reverted {
    PropertyList value;
    bool isWhole = true;  // nothing of it was changed by others
};

// The keys that differ between before and after, as they were before.
Reverted withKeysOf(const PropertyList& before, const PropertyList& after, const PropertyList& now) {
    Reverted result;
    MutableDictionary keys(now);
    auto takeBack = [&](const PropertyList& key) {
        const std::string_view name = key.stringValue();
        if (before[name] == after[name]) return;
        if (name == kSettingsKey && before[name].isDictionary() && after[name].isDictionary()) {
            Reverted inner = withKeysOf(before[name], after[name], now[name]);
            keys.set(name, inner.value);
            result.isWhole = result.isWhole && inner.isWhole;
        } else if (now[name] == after[name]) {
            keys.set(name, before[name]);
        } else {
            result.isWhole = result.isWhole && now[name] == before[name];
        }
    };
    for (const PropertyList::Entry& entry : after.entries()) takeBack(entry.key);
    for (const PropertyList::Entry& entry : before.entries())
        if (!after[entry.key.stringValue()]) takeBack(entry.key);
    result.value = std::move(keys).freeze();
    return result;
}

// A list under repair: what goes and what comes is noted, and done at the end.
class Repair {
public:
    explicit Repair(List& list) : list_(list), index_(list), goes_(list.size()) {}

    void removeAdded(const Edit& edit) {
        auto row = index_.find(edit.after, edit.row);
        if (!row) return conflict(Conflict::Kind::Gone, edit.after);
        if (list_[*row] != edit.after) return conflict(Conflict::Kind::Changed, edit.after);
        goes_[*row] = true;
        index_.remove(edit.after, *row);
    }

    void takeBackKeys(const Edit& edit) {
        auto row = index_.find(edit.after, edit.row);
        if (!row) return conflict(Conflict::Kind::Gone, edit.after);
        const bool isAnother = identityOf(edit.before) != identityOf(edit.after);
        if (isAnother && index_.find(edit.before, edit.row)) return conflict(Conflict::Kind::Back, edit.before);
        Reverted reverted = withKeysOf(edit.before, edit.after, list_[*row]);
        if (!reverted.isWhole) conflict(Conflict::Kind::Changed, edit.after);
        index_.remove(list_[*row], *row);
        list_[*row] = reverted.value;
        index_.add(list_[*row], *row);
    }

    void putBack(const Edit& edit) {
        const std::string identity = identityOf(edit.before);
        if (index_.find(edit.before, edit.row) || gaps_.contains(identity))
            return conflict(Conflict::Kind::Back, edit.before);
        const std::size_t gap = gapFor(edit);
        comes_[gap].push_back(edit.before);
        gaps_[identity] = gap;
    }

    std::vector<Conflict> finish() {
        List repaired;
        for (std::size_t row = 0; row <= list_.size(); ++row) {
            if (auto coming = comes_.find(row); coming != comes_.end())
                repaired.insert(repaired.end(), coming->second.begin(), coming->second.end());
            if (row < list_.size() && !goes_[row]) repaired.push_back(list_[row]);
        }
        list_ = std::move(repaired);
        return std::move(conflicts_);
    }

private:
    void conflict(Conflict::Kind kind, const PropertyList& entry) { conflicts_.push_back({kind, entry}); }

    // The row in front of which it comes.
    std::size_t gapFor(const Edit& edit) const {
        if (!edit.above) return 0;
        if (auto gap = gaps_.find(identityOf(edit.above)); gap != gaps_.end()) return gap->second;
        if (auto row = index_.find(edit.above, edit.row)) return *row + 1;
        return std::min(edit.row, list_.size());
    }

    List& list_;
    EntryIndex index_;
    std::vector<bool> goes_;
    std::map<std::size_t, List> comes_;  // in front of these rows
    std::unordered_map<std::string, std::size_t> gaps_;
    std::vector<Conflict> conflicts_;
};

}  // namespace

ListEdits difference(Rows before, Rows after) {
    std::size_t head = 0, tail = 0;
    const std::size_t shorter = std::min(before.size(), after.size());
    while (head < shorter && before[head] == after[head]) ++head;
    while (tail < shorter - head && before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) ++tail;
    const Rows from = before.subspan(head, before.size() - head - tail);
    const Rows to = after.subspan(head, after.size() - head - tail);
    if (from.size() == 1 && to.size() == 1) return {{from[0], to[0], head, {}}};

    const std::vector<std::size_t> former = formerRows(from, to);
    const std::vector<bool> stays = longestRisingPart(former);
    std::vector<bool> isThere(from.size());
    ListEdits edits;
    for (std::size_t i = 0; i < to.size(); ++i) {
        if (stays[i]) isThere[former[i]] = true;
        if (!stays[i])
            edits.push_back({{}, to[i], head + i, {}});
        else if (from[former[i]] != to[i])
            edits.push_back({from[former[i]], to[i], head + i, {}});
    }
    for (std::size_t i = 0; i < from.size(); ++i)
        if (!isThere[i]) edits.push_back({from[i], {}, head + i, head + i > 0 ? before[head + i - 1] : PropertyList()});
    return edits;
}

std::vector<Conflict> revert(const ListEdits& edits, List& list) {
    Repair repair(list);
    for (const Edit& edit : edits)
        if (!edit.before) repair.removeAdded(edit);
    for (const Edit& edit : edits)
        if (edit.before && edit.after) repair.takeBackKeys(edit);
    for (const Edit& edit : edits)
        if (!edit.after) repair.putBack(edit);
    return repair.finish();
}

}  // namespace entrylist
