#include "propertylist/Node.h"

namespace propertylist {
namespace {

// Larger dictionaries are looked up through an index.
constexpr std::size_t kLargeDictionary = 24;

using Entry = PropertyList::Entry;

const PropertyList kNothing;

}  // namespace

// Removed entries stay as entries without a key until they are too many, so that the positions hold.
struct MutableDictionary::Index {
    HashTable table;
};

void MutableDictionary::IndexDeleter::operator()(Index* index) const noexcept { delete index; }

MutableDictionary::MutableDictionary(const PropertyList& source)
    : entries_(source.entries().begin(), source.entries().end()) {}

std::size_t MutableDictionary::find(std::string_view key) const {
    const auto isThere = [&](std::size_t i) { return entries_[i].key && entries_[i].key.node()->text() == key; };
    if (entries_.size() > kLargeDictionary) {
        if (!index_) makeIndex();
        auto at = index_->table.find(hashText(key), isThere);
        return at == HashTable::kMissing ? entries_.size() : at;
    }
    std::size_t at = 0;
    while (at < entries_.size() && !isThere(at)) ++at;
    return at;
}

void MutableDictionary::makeIndex() const {
    index_.reset(new Index{HashTable(entries_.size())});
    for (std::size_t i = 0; i < entries_.size(); ++i)
        if (entries_[i].key) index_->table.add(hashText(entries_[i].key.node()->text()), static_cast<std::uint32_t>(i));
}

void MutableDictionary::append(PropertyList key, PropertyList value) {
    if (index_) index_->table.add(hashText(key.node()->text()), static_cast<std::uint32_t>(entries_.size()));
    entries_.push_back({std::move(key), std::move(value)});
}

void MutableDictionary::set(std::string_view key, PropertyList value) {
    if (!value) return remove(key);
    std::size_t at = find(key);
    if (at < entries_.size())
        entries_[at].value = std::move(value);
    else if (PropertyList made = key)
        append(std::move(made), std::move(value));
}

PropertyList MutableDictionary::exchange(PropertyList key, PropertyList value) {
    if (!key.isString() || !value) return {};
    std::size_t at = find(key.node()->text());
    if (at < entries_.size()) {
        entries_[at].key = std::move(key);
        return std::exchange(entries_[at].value, std::move(value));
    }
    append(std::move(key), std::move(value));
    return {};
}

void MutableDictionary::remove(std::string_view key) {
    std::size_t at = find(key);
    if (at == entries_.size()) return;
    entries_[at] = {};
    if (++removed_ > kLargeDictionary && removed_ > entries_.size() / 2) compact();
}

void MutableDictionary::compact() {
    std::erase_if(entries_, [](const Entry& entry) { return !entry.key; });
    index_.reset();
    removed_ = 0;
}

const PropertyList& MutableDictionary::operator[](std::string_view key) const noexcept {
    std::size_t at = find(key);
    return at < entries_.size() ? entries_[at].value : kNothing;
}

std::span<const PropertyList::Entry> MutableDictionary::entries() {
    if (removed_ > 0) compact();
    return entries_;
}

PropertyList MutableDictionary::freeze() && {
    compact();
    return PropertyListStorage::dictionary(std::exchange(entries_, {}));
}

PropertyList PropertyList::dictionary(std::initializer_list<std::pair<std::string_view, PropertyList>> pairs) {
    MutableDictionary made;
    for (const auto& [key, value] : pairs) made.set(key, value);
    return std::move(made).freeze();
}

}  // namespace propertylist
