#include "propertylist/PropertyList.h"

#include "propertylist/Date.h"
#include "propertylist/Node.h"
#include "propertylist/Unicode.h"

#include <cmath>
#include <cstring>

namespace propertylist {
namespace {

using Node = PropertyList::Node;
using Entry = PropertyList::Entry;
using Type = PropertyList::Type;

const PropertyList kNothing;

struct LeafBlock : StorageOwner {
    LeafBlock() noexcept : StorageOwner(Kind::Leaf) { node.owner = this; }
    Node node;
};

struct ContainerBlock : StorageOwner {
    explicit ContainerBlock(Kind k) noexcept : StorageOwner(k) { node.owner = this; }
    Node node;
    ContainerBlock* nextToDispose = nullptr;
    ContainerHead head;  // last: the children follow
};
static_assert(sizeof(ContainerBlock) == sizeof(StorageOwner) + sizeof(Node) + sizeof(void*) + sizeof(ContainerHead));
static_assert(sizeof(Entry) == 2 * sizeof(PropertyList));

LeafBlock* makeLeaf(Type type, std::size_t trailing = 0) {
    auto* block = new (::operator new(sizeof(LeafBlock) + trailing)) LeafBlock;
    block->node.type = type;
    return block;
}

PropertyList makeNumber(Type type, std::int64_t integer) {
    LeafBlock* block = makeLeaf(type);
    block->node.integer = integer;
    return PropertyListStorage::adopt(&block->node);
}

PropertyList makeBytes(Type type, std::string_view bytes) {
    if (bytes.size() > Node::kMaximumSize) return {};
    LeafBlock* block = makeLeaf(type, bytes.size());
    auto* copy = reinterpret_cast<char*>(block + 1);
    if (!bytes.empty()) std::memcpy(copy, bytes.data(), bytes.size());
    block->node.bytes = copy;
    block->node.size = static_cast<std::uint32_t>(bytes.size());
    return PropertyListStorage::adopt(&block->node);
}

template <typename Child>
PropertyList makeContainer(StorageOwner::Kind kind, std::vector<Child>& children) {
    auto* block = new (::operator new(sizeof(ContainerBlock) + children.size() * sizeof(Child))) ContainerBlock(kind);
    auto* place = reinterpret_cast<Child*>(block + 1);
    block->node.type = kind == StorageOwner::Kind::Array ? Type::Array : Type::Dictionary;
    block->node.size = static_cast<std::uint32_t>(children.size());
    block->node.elements = reinterpret_cast<const PropertyList*>(place);
    for (Child& child : children) new (place++) Child(std::move(child));
    PropertyListStorage::measure(block->node);
    return PropertyListStorage::adopt(&block->node);
}

void destroyContainer(ContainerBlock* block) noexcept {
    std::ranges::destroy(block->node.children());
    delete block->head.index.load(std::memory_order_acquire);
    block->~ContainerBlock();
    ::operator delete(block);
}

// The children of a container may be containers whose last holder it is. They wait in a list instead of being destroyed
// from within, so that no depth of nesting can use up the stack.
void disposeContainer(ContainerBlock* block) noexcept {
    thread_local ContainerBlock* waiting = nullptr;
    thread_local bool busy = false;
    block->nextToDispose = std::exchange(waiting, block);
    if (busy) return;
    busy = true;
    while (waiting) {
        ContainerBlock* next = waiting;
        waiting = next->nextToDispose;
        destroyContainer(next);
    }
    busy = false;
}

// Larger dictionaries are looked up through an index.
constexpr std::uint32_t kLargeDictionary = 24;

// Another thread may have come first; then its index is used.
const DictionaryIndex& publish(const Node& dictionary, std::unique_ptr<DictionaryIndex> made) {
    DictionaryIndex* first = nullptr;
    if (!dictionary.head().index.compare_exchange_strong(first, made.get(), std::memory_order_acq_rel,
                                                         std::memory_order_acquire))
        return *first;
    DictionaryIndex* index = made.release();
    if (dictionary.owner->kind == StorageOwner::Kind::Document) {
        auto& list = static_cast<PropertyListDocument*>(dictionary.owner)->indexes;
        index->next = list.load(std::memory_order_relaxed);
        while (!list.compare_exchange_weak(index->next, index, std::memory_order_acq_rel, std::memory_order_relaxed)) {
        }
    }
    return *index;
}

const DictionaryIndex& indexOf(const Node& dictionary) {
    if (auto* index = dictionary.head().index.load(std::memory_order_acquire)) return *index;
    auto made = std::make_unique<DictionaryIndex>(DictionaryIndex{HashTable(dictionary.size)});
    for (std::uint32_t i = 0; i < dictionary.size; ++i)
        made->table.add(hashText(dictionary.entries[i].key.node()->text()), i);
    return publish(dictionary, std::move(made));
}

const PropertyList& lookUp(const Node& dictionary, std::string_view key) noexcept {
    const auto isThere = [&](std::uint32_t i) { return dictionary.entries[i].key.node()->text() == key; };
    std::uint32_t at = 0;
    if (dictionary.size > kLargeDictionary)
        at = indexOf(dictionary).table.find(hashText(key), isThere);
    else
        while (at < dictionary.size && !isThere(at)) ++at;
    return at < dictionary.size ? dictionary.entries[at].value : kNothing;
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
            case Type::Data:
                return a->text() == b->text();
            case Type::Real:
                return a->real == b->real || (std::isnan(a->real) && std::isnan(b->real));
            case Type::Array:
            case Type::Dictionary:
                if (a->size != b->size || a->height != b->height) return false;
                pending_.emplace_back(a, b);
                return true;
            default:
                return a->integer == b->integer && a->flag == b->flag;
        }
    }
    bool sameElements(const Node& a, const Node& b) {
        for (std::uint32_t i = 0; i < a.size; ++i)
            if (!same(a.elements[i].node(), b.elements[i].node())) return false;
        return true;
    }
    bool sameEntries(const Node& a, const Node& b) {
        for (std::uint32_t i = 0; i < a.size; ++i) {
            std::string_view key = a.entries[i].key.node()->text();
            const Entry& atSamePlace = b.entries[i];  // where it mostly is
            const PropertyList& other = atSamePlace.key.node()->text() == key ? atSamePlace.value : lookUp(b, key);
            if (!same(a.entries[i].value.node(), other.node())) return false;
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

void PropertyListStorage::dispose(StorageOwner* owner) noexcept {
    switch (owner->kind) {
        case StorageOwner::Kind::Document:
            delete static_cast<PropertyListDocument*>(owner);
            return;
        case StorageOwner::Kind::Leaf:
            static_cast<LeafBlock*>(owner)->~LeafBlock();
            ::operator delete(owner);
            return;
        default:
            disposeContainer(static_cast<ContainerBlock*>(owner));
    }
}

PropertyList PropertyListStorage::dictionary(std::vector<Entry>&& entries) {
    return makeContainer(StorageOwner::Kind::Dictionary, entries);
}

PropertyList PropertyList::array(std::vector<PropertyList> elements) {
    std::erase_if(elements, [](const PropertyList& element) { return !element; });
    return makeContainer(StorageOwner::Kind::Array, elements);
}

PropertyList::PropertyList(std::string_view text) {
    if (isValidUTF8(text)) *this = makeBytes(Type::String, text);
}

PropertyList PropertyList::data(std::string_view bytes) { return makeBytes(Type::Data, bytes); }

PropertyList PropertyList::makeBoolean(bool value) noexcept {
    static const auto make = [](bool is) {
        Node node;
        node.type = Type::Boolean;
        node.integer = is;
        return node;
    };
    static const Node kFalse = make(false), kTrue = make(true);
    return PropertyList(value ? &kTrue : &kFalse);
}

PropertyList PropertyList::makeSigned(std::int64_t value) { return makeNumber(Type::Integer, value); }

PropertyList PropertyList::makeUnsigned(std::uint64_t value) {
    LeafBlock* block = makeLeaf(Type::Integer);
    block->node.integer = static_cast<std::int64_t>(value);
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
        block->node.flag = Node::kUnsigned;
    return PropertyList(&block->node);
}

PropertyList::PropertyList(double value) {
    LeafBlock* block = makeLeaf(Type::Real);
    block->node.real = value;
    node_ = &block->node;
}

PropertyList::PropertyList(Date value) {
    double seconds = secondsSince2001(value);
    auto kept = dateFromSecondsSince2001(seconds);
    // At the very ends the nearest double may lie outside what a Date holds.
    if (!kept) kept = dateFromSecondsSince2001(std::nextafter(seconds, 0));
    *this = makeNumber(Type::Date, kept->microseconds);
}

PropertyList::PropertyList(const PropertyList& other) noexcept : node_(other.node_) {
    PropertyListStorage::retain(node_);
}
PropertyList& PropertyList::operator=(const PropertyList& other) noexcept { return *this = PropertyList(other); }
PropertyList& PropertyList::operator=(PropertyList&& other) noexcept {
    const Node* taken = std::exchange(other.node_, nullptr);
    PropertyListStorage::release(std::exchange(node_, taken));
    return *this;
}
PropertyList::~PropertyList() { PropertyListStorage::release(node_); }

PropertyList::Type PropertyList::type() const noexcept { return node_ ? node_->type : Type::Nothing; }

bool PropertyList::isNumber() const noexcept {
    return type() == Type::Boolean || type() == Type::Integer || type() == Type::Real;
}

std::string_view PropertyList::stringValue() const noexcept { return isString() ? node_->text() : std::string_view(); }
std::string_view PropertyList::dataValue() const noexcept { return isData() ? node_->text() : std::string_view(); }

std::span<const PropertyList> PropertyList::elements() const noexcept {
    return isArray() ? std::span(node_->elements, node_->size) : std::span<const PropertyList>();
}
std::span<const Entry> PropertyList::entries() const noexcept {
    return isDictionary() ? std::span(node_->entries, node_->size) : std::span<const Entry>();
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

std::size_t PropertyList::size() const noexcept { return node_ && node_->isContainer() ? node_->size : 0; }

const PropertyList& PropertyList::operator[](std::size_t index) const noexcept {
    return isArray() && index < node_->size ? node_->elements[index] : kNothing;
}
const PropertyList& PropertyList::operator[](std::string_view key) const noexcept {
    return isDictionary() ? lookUp(*node_, key) : kNothing;
}

bool PropertyList::equal(const PropertyList& a, const PropertyList& b) noexcept {
    return Comparison().equal(a.node_, b.node_);
}

std::vector<PropertyList> mutableArray(const PropertyList& source) {
    return {source.elements().begin(), source.elements().end()};
}

}  // namespace propertylist
