#include "entrylist/ListSearch.h"

#include "entrylist/Differences.h"
#include "entrylist/Outlets.h"
#include "propertylist/Format.h"

#include <algorithm>
#include <sstream>
#include <utility>

using namespace platform;
using namespace settings;

namespace entrylist {
namespace {

constexpr std::string_view kHideMissingKey = "Hide What Is Not Installed";  // boolean

// Of preparing: rows, some milliseconds' worth, and seconds between.
constexpr std::size_t kRowsAtOnce = 400;
constexpr double kPause = 0.005;

}  // namespace

bool ListSearch::setOutlet(std::string_view name, View& object) {
    static constexpr NamedOutlet<ListSearch> kOutlets[] = {
        {"listSearch", [](ListSearch& s, View& o) { s.field_.connect(o); }},
        {"listStates", [](ListSearch& s, View& o) { s.states_.connect(o); }},
        {"hideMissing", [](ListSearch& s, View& o) { s.hideMissing_.connect(o); }},
    };
    return connectNamed(*this, kOutlets, name, object);
}

bool ListSearch::performAction(std::string_view selector) {
    static constexpr NamedAction<ListSearch> kActions[] = {
        {"searchEntries:", &ListSearch::search},
        {"findEntry:", &ListSearch::startTyping},
        {"toggleHideMissing:", &ListSearch::toggleMissing},
    };
    return performNamed(*this, kActions, selector);
}

void ListSearch::start() {
    hideMissing_->setState(platform_.preferences.getBooleanValue(kHideMissingKey, kWindowDomain));
}

void ListSearch::startTyping() { field_->takeFocus(); }

void ListSearch::toggleMissing() {
    platform_.preferences.setValue(kHideMissingKey, hideMissing_->state(), kWindowDomain);
    platform_.preferences.synchronize(kWindowDomain);
    search();
}

ListSearch::State ListSearch::state() { return static_cast<State>(std::max(states_->selectedRow(), 0)); }

bool ListSearch::isSearching() { return !words_.empty() || state() != State::All || hideMissing_->state(); }

void ListSearch::search() {
    std::istringstream typed(platform_.toolkit.searchKey(field_->stringValue()));
    words_.clear();
    for (std::string word; typed >> word;) words_.push_back(word);
    if (!isSearching()) prepareSoon();
    if (!std::exchange(wasSearching_, isSearching()) && !isSearching()) return;  // the field only got the keyboard
    TableView& table = owner_.table();
    std::optional<std::vector<int>> found = shownRows();
    const int selected = table.selectedRow();
    if (found && !found->empty() && !std::ranges::binary_search(*found, selected)) table.selectRow(found->front());
    table.reloadData();
    table.scrollRowToVisible(table.selectedRow());
}

void ListSearch::lookAgain() {
    known_.clear();
    if (isSearching()) owner_.table().reloadData();
}

// The first letter shall not wait until all that 10,000 rows show is found out.
void ListSearch::prepareSoon() {
    if (!preparing_) preparing_ = platform_.runLoop.scheduleTimer(kPause, true, [this] { prepareSome(); });
}

void ListSearch::prepareSome() {
    const PropertyList entries = owner_.entries();
    const std::size_t end = std::min(entries.size(), known_.size() + kRowsAtOnce);
    for (std::size_t row = known_.size(); row < end; ++row) known(row, entries[row]);
    if (end == entries.size()) preparing_.reset();
}

std::optional<std::vector<int>> ListSearch::shownRows() {
    if (!isSearching()) return std::nullopt;
    const PropertyList entries = owner_.entries();
    std::vector<int> rows;
    for (std::size_t row = 0; row < entries.size(); ++row)
        if (isFound(row, entries[row], entries[0])) rows.push_back(static_cast<int>(row));
    if (rows.empty()) showPlaceholder();
    return rows;
}

const ListSearch::Known& ListSearch::known(std::size_t row, const PropertyList& entry) {
    if (row >= known_.size()) known_.resize(row + 1);
    Known& known = known_[row];
    if (known.entry && known.entry == entry) return known;
    std::string text = owner_.nameOf(entry);
    for (const std::string& more : {std::string(bytesKept(entry[kDataKey])),
                                    std::string(bytesKept(entry[kIdentifierKey])), owner_.placeOf(entry)})
        text += "\n" + more;
    known = {entry, platform_.toolkit.searchKey(text), owner_.isMissing(entry)};
    return known;
}

bool ListSearch::isFound(std::size_t row, const PropertyList& entry, const PropertyList& global) {
    const Known& facts = known(row, entry);
    auto lies = [&](const std::string& word) { return facts.text.find(word) != std::string::npos; };
    if ((hideMissing_->state() && state() != State::Missing && facts.isMissing) || !std::ranges::all_of(words_, lies))
        return false;
    switch (state()) {
        case State::All:
            return true;
        case State::Off:
            return shownValue(entry[kSettingsKey], options().front()) == 0;
        case State::Missing:
            return facts.isMissing;
        case State::Different:
            return differs(entry, global);
        case State::Unreachable:
            return owner_.neverApplies(row);
    }
    return false;
}

void ListSearch::showPlaceholder() {
    const std::string shown = owner_.nameOf(owner_.shown().entry());
    const Bundle& pane = platform_.paneBundle;
    owner_.table().setPlaceholder(
        formatted(pane.localizedString("No entry is found. The options are those of “%@”."), {shown}));
}

}  // namespace entrylist
