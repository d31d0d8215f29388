#include "propertylist/PropertyList.h"

#include "propertylist/Packed.h"

#include <cmath>

namespace propertylist {
namespace {

using Node = PropertyList::Node;
using Entry = PropertyList::Entry;
using Type = PropertyList::Type;

const PropertyList kNothing;

// Larger dictionaries are looked up through an index.
constexpr std::uint32_t kLargeDictionary = 24;

bool isKey(const Entry& entry, std::uint32_t hash, std::string_view key) {
    const Node& node = *entry.key.node();
    return node.count == hash && node.text() == key;
}

// Another thread may have come first; then its index is used.
const DictionaryIndex* publish(const Node& dictionary, const Entry* entries, std::unique_ptr<DictionaryIndex> made) {
    auto& place = PropertyListStorage::indexOf(entries);
    DictionaryIndex* first = nullptr;
    if (!place.compare_exchange_strong(first, made.get(), std::memory_order_acq_rel, std::memory_order_acquire))
        return first;
    DictionaryIndex* index = made.release();
    if (dictionary.owner->kind == StorageOwner::Kind::Document) {
        auto& list = static_cast<PropertyListDocument*>(dictionary.owner)->indexes;
        index->next = list.load(std::memory_order_relaxed);
        while (!list.compare_exchange_weak(index->next, index, std::memory_order_acq_rel, std::memory_order_relaxed)) {
        }
    }
    return index;
}

// Null when there is no memory for one.
const DictionaryIndex* indexOf(const Node& dictionary, const Entry* entries) noexcept {
    if (auto* index = PropertyListStorage::indexOf(entries).load(std::memory_order_acquire)) return index;
    try {
        auto made = std::make_unique<DictionaryIndex>(DictionaryIndex{HashTable(dictionary.count)});
        for (std::uint32_t i = 0; i < dictionary.count; ++i) made->table.add(entries[i].key.node()->count, i);
        return publish(dictionary, entries, std::move(made));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

const PropertyList& lookUp(const Node& dictionary, std::uint32_t hash, std::string_view key) noexcept {
    const Entry* entries = PropertyListStorage::entriesOf(dictionary);
    if (dictionary.count > kLargeDictionary)
        if (const DictionaryIndex* index = indexOf(dictionary, entries)) {
            auto at = index->table.find(hash, [&](std::uint32_t i) { return isKey(entries[i], hash, key); });
            return at == HashTable::kMissing ? kNothing : entries[at].value;
        }
    for (std::uint32_t i = 0; i < dictionary.count; ++i)
        if (isKey(entries[i], hash, key)) return entries[i].value;
    return kNothing;
}

std::string_view textOf(std::string_view text) { return text; }
std::string_view textOf(const Node* string) { return string->text(); }

// Nothing when the keys do not come in the same order.
template <typename A, typename B>
std::optional<bool> areSameInOrder(const A& a, const B& b) {
    for (std::uint32_t i = 0; i < a.count(); ++i)
        if (textOf(a.key(i)) != textOf(b.key(i))) return std::nullopt;
    for (std::uint32_t i = 0; i < a.count(); ++i)
        if (textOf(a.value(i)) != textOf(b.value(i))) return false;
    return true;
}

// Two dictionaries of strings in a compact form, which keep it.
std::optional<bool> areSameCompact(const Node& a, const Node& b) {
    if (a.isReferring() && b.isPacked()) return areSameInOrder(ReferringView(a), PackedView(b));
    if (a.isPacked() && b.isReferring()) return areSameInOrder(PackedView(a), ReferringView(b));
    if (a.isPacked() && b.isPacked()) return areSameInOrder(PackedView(a), PackedView(b));
    if (a.isReferring() && b.isReferring()) return areSameInOrder(ReferringView(a), ReferringView(b));
    return std::nullopt;
}

// Equality walks pairs of containers with a list of its own: values that were built may be nested as deep as they like.
class Comparison {
public:
    bool equal(const Node* a, const Node* b) {
        if (!same(a, b)) return false;
        while (!pending_.empty()) {
            auto [x, y] = pending_.back();
            pending_.pop_back();
            if (!(x->type == Type::Array ? sameElements(*x, *y) : sameEntries(*x, *y))) return false;
        }
        return true;
    }

private:
    // Containers are put off; everything else is compared at once.
    bool same(const Node* a, const Node* b) {
        if (a == b) return true;
        if (!a || !b || a->type != b->type) return false;
        switch (a->type) {
            case Type::String:
                return a->count == b->count && a->text() == b->text();
            case Type::Data:
                return a->text() == b->text();
            case Type::Real:
                return a->real == b->real || (std::isnan(a->real) && std::isnan(b->real));
            case Type::Integer:
                return a->integer == b->integer && a->flag == b->flag;
            case Type::Array:
            case Type::Dictionary:
                if (a->count != b->count || a->height != b->height) return false;
                pending_.emplace_back(a, b);
                return true;
            default:
                return a->integer == b->integer;
        }
    }
    bool sameElements(const Node& a, const Node& b) {
        for (std::uint32_t i = 0; i < a.count; ++i)
            if (!same(a.elements[i].node(), b.elements[i].node())) return false;
        return true;
    }
    bool sameEntries(const Node& a, const Node& b) {
        if (const auto areSame = areSameCompact(a, b)) return *areSame;
        const Entry* own = PropertyListStorage::entriesOf(a);
        const Entry* others = PropertyListStorage::entriesOf(b);
        for (std::uint32_t i = 0; i < a.count; ++i) {
            const Node* key = own[i].key.node();
            // Mostly the order is the same.
            const Node* other = isKey(others[i], key->count, key->text()) ? others[i].value.node()
                                                                          : lookUp(b, key->count, key->text()).node();
            if (!same(own[i].value.node(), other)) return false;
        }
        return true;
    }

    std::vector<std::pair<const Node*, const Node*>> pending_;
};

// Cut off towards zero and limited to the range of the result.
template <typename Integer>
Integer limited(double real) {
    using Limits = std::numeric_limits<Integer>;
    if (std::isnan(real)) return 0;
    if (real <= static_cast<double>(Limits::min())) return Limits::min();
    if (real >= static_cast<double>(Limits::max())) return Limits::max();
    return static_cast<Integer>(real);
}

}  // namespace

PropertyList::Type PropertyList::type() const noexcept { return node_ ? node_->type : Type::Nothing; }

bool PropertyList::isNumber() const noexcept {
    return type() == Type::Boolean || type() == Type::Integer || type() == Type::Real;
}

std::string_view PropertyList::stringValue() const noexcept { return isString() ? node_->text() : std::string_view(); }
std::string_view PropertyList::dataValue() const noexcept { return isData() ? node_->text() : std::string_view(); }

std::span<const PropertyList> PropertyList::elements() const noexcept {
    return isArray() ? std::span(node_->elements, node_->count) : std::span<const PropertyList>();
}
std::span<const Entry> PropertyList::entries() const noexcept {
    return isDictionary() ? std::span(PropertyListStorage::entriesOf(*node_), node_->count) : std::span<const Entry>();
}

bool PropertyList::isUnsigned() const noexcept { return type() == Type::Integer && node_->flag != 0; }

bool PropertyList::boolValue() const noexcept {
    if (type() == Type::Real) return node_->real != 0 && !std::isnan(node_->real);
    return isNumber() && node_->integer != 0;
}
std::int64_t PropertyList::integerValue() const noexcept {
    if (type() == Type::Real) return limited<std::int64_t>(node_->real);
    if (isUnsigned()) return std::numeric_limits<std::int64_t>::max();
    return isNumber() ? node_->integer : 0;
}
std::uint64_t PropertyList::unsignedValue() const noexcept {
    if (type() == Type::Real) return limited<std::uint64_t>(node_->real);
    if (isUnsigned()) return static_cast<std::uint64_t>(node_->integer);
    return isNumber() && node_->integer > 0 ? static_cast<std::uint64_t>(node_->integer) : 0;
}
double PropertyList::realValue() const noexcept {
    if (type() == Type::Real) return node_->real;
    return isUnsigned() ? static_cast<double>(unsignedValue()) : static_cast<double>(integerValue());
}
std::optional<Date> PropertyList::dateValue() const noexcept {
    return isDate() ? std::optional(Date{node_->integer}) : std::nullopt;
}

std::size_t PropertyList::size() const noexcept { return node_ && node_->isContainer() ? node_->count : 0; }

const PropertyList& PropertyList::operator[](std::size_t index) const noexcept {
    return isArray() && index < node_->count ? node_->elements[index] : kNothing;
}
const PropertyList& PropertyList::operator[](std::string_view key) const noexcept {
    return isDictionary() ? lookUp(*node_, hashText(key), key) : kNothing;
}

bool PropertyList::equal(const PropertyList& a, const PropertyList& b) noexcept {
    return Comparison().equal(a.node_, b.node_);
}

std::vector<PropertyList> mutableArray(const PropertyList& source) {
    return {source.elements().begin(), source.elements().end()};
}

}  // namespace propertylist
