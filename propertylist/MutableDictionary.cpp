#include "propertylist/Node.h"

namespace propertylist {
namespace {

// Larger dictionaries are looked up through an index.
constexpr std::size_t kLargeDictionary = 24;

using Entry = PropertyList::Entry;

const PropertyList kNothing;

bool isKey(const Entry& entry, std::uint32_t hash, std::string_view key) {
    const PropertyList::Node* node = entry.key.node();
    return node && node->count == hash && node->text() == key;
}

}  // namespace

// Removed entries stay as entries without a key until they are too many, so that the positions hold.
struct MutableDictionary::Index {
    HashTable table;
};

void MutableDictionary::IndexDeleter::operator()(Index* index) const noexcept { delete index; }

MutableDictionary::MutableDictionary(const PropertyList& source)
    : entries_(source.entries().begin(), source.entries().end()) {}

std::size_t MutableDictionary::find(std::uint32_t hash, std::string_view key) const {
    if (entries_.size() > kLargeDictionary) {
        if (!index_) makeIndex();
        auto at = index_->table.find(hash, [&](std::uint32_t i) { return isKey(entries_[i], hash, key); });
        return at == HashTable::kMissing ? entries_.size() : at;
    }
    std::size_t at = 0;
    while (at < entries_.size() && !isKey(entries_[at], hash, key)) ++at;
    return at;
}

void MutableDictionary::makeIndex() const {
    index_.reset(new Index{HashTable(entries_.size())});
    for (std::size_t i = 0; i < entries_.size(); ++i)
        if (entries_[i].key) index_->table.add(entries_[i].key.node()->count, static_cast<std::uint32_t>(i));
}

void MutableDictionary::set(std::string_view key, PropertyList value) {
    if (!value) return remove(key);
    std::uint32_t hash = hashText(key);
    std::size_t at = find(hash, key);
    if (at < entries_.size()) {
        entries_[at].value = std::move(value);
    } else if (PropertyList made = key) {
        entries_.push_back({std::move(made), std::move(value)});
        if (index_) index_->table.add(hash, static_cast<std::uint32_t>(at));
    }
}

PropertyList MutableDictionary::exchange(PropertyList key, PropertyList value) {
    if (!key.isString() || !value) return {};
    const PropertyList::Node& node = *key.node();
    const std::size_t at = find(node.count, node.text());
    if (at < entries_.size()) {
        entries_[at].key = std::move(key);
        return std::exchange(entries_[at].value, std::move(value));
    }
    if (index_) index_->table.add(node.count, static_cast<std::uint32_t>(at));
    entries_.push_back({std::move(key), std::move(value)});
    return {};
}

void MutableDictionary::remove(std::string_view key) {
    std::size_t at = find(hashText(key), key);
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
    std::size_t at = find(hashText(key), key);
    return at < entries_.size() ? entries_[at].value : kNothing;
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
