#include "entrylist/EntryIndex.h"

#include "settings/EntryList.h"

#include <algorithm>

using platform::PropertyList;

namespace entrylist {

std::string identityOf(const PropertyList& entry) {
    using namespace settings;
    if (!entry.isDictionary() || !entry[kTypeKey]) return std::string("?").append(entry.description());
    if (hasType(entry, kGlobalType)) return "Global";
    // A string and data of the same bytes are two values.
    const PropertyList& data = entry[kDataKey];
    const char* form = data.isString() ? " " : data.isData() ? "#" : "=";
    const std::string_view bytes = bytesKept(data);
    return entry[kTypeKey].description() + form + (*form == '=' ? data.description() : std::string(bytes));
}

EntryIndex::EntryIndex(std::span<const PropertyList> list) {
    for (std::size_t row = 0; row < list.size(); ++row) add(list[row], row);
}

void EntryIndex::add(const PropertyList& entry, std::size_t row) { rows_[identityOf(entry)].push_back(row); }

void EntryIndex::remove(const PropertyList& entry, std::size_t row) {
    auto found = rows_.find(identityOf(entry));
    if (found != rows_.end()) std::erase(found->second, row);
}

std::optional<std::size_t> EntryIndex::find(const PropertyList& entry, std::size_t near) const {
    auto found = rows_.find(identityOf(entry));
    if (found == rows_.end() || found->second.empty()) return std::nullopt;
    auto distance = [near](std::size_t row) { return row < near ? near - row : row - near; };
    return *std::ranges::min_element(found->second, {}, distance);
}

}  // namespace entrylist
