#include "propertylist/Date.h"
#include "propertylist/Node.h"
#include "propertylist/Unicode.h"

#include <cmath>
#include <cstring>

namespace propertylist {
namespace {

using Node = PropertyList::Node;
using Entry = PropertyList::Entry;

struct LeafBlock : StorageOwner {
    LeafBlock() noexcept : StorageOwner(Kind::Leaf) { node.owner = this; }
    Node node;
};

// The children follow; the index stands last because look-ups find it just before the entries.
struct ContainerBlock : StorageOwner {
    ContainerBlock(Kind k, std::size_t childCount) noexcept : StorageOwner(k) {
        node.owner = this;
        node.type = k == Kind::Array ? PropertyList::Type::Array : PropertyList::Type::Dictionary;
        node.count = static_cast<std::uint32_t>(childCount);
        if (k == Kind::Array)
            node.elements = reinterpret_cast<const PropertyList*>(this + 1);
        else
            node.entries = reinterpret_cast<const Entry*>(this + 1);
    }
    Node node;
    ContainerBlock* nextToDispose = nullptr;
    std::atomic<DictionaryIndex*> index{nullptr};
};
static_assert(sizeof(ContainerBlock) == sizeof(StorageOwner) + sizeof(Node) + 2 * sizeof(void*));

LeafBlock* makeLeaf(PropertyList::Type type, std::size_t trailing = 0) {
    auto* block = new (::operator new(sizeof(LeafBlock) + trailing)) LeafBlock;
    block->node.type = type;
    return block;
}

PropertyList makeNumber(PropertyList::Type type, std::int64_t integer) {
    LeafBlock* block = makeLeaf(type);
    block->node.integer = integer;
    return PropertyListStorage::adopt(&block->node);
}

PropertyList makeBytes(PropertyList::Type type, std::string_view bytes) {
    LeafBlock* block = makeLeaf(type, bytes.size());
    auto* copy = reinterpret_cast<char*>(block + 1);
    if (!bytes.empty()) std::memcpy(copy, bytes.data(), bytes.size());
    block->node.bytes = copy;
    block->node.length = bytes.size();
    if (type == PropertyList::Type::String) {
        block->node.flag = isASCII(bytes) ? Node::kASCII : 0;
        block->node.count = hashText(bytes);
    }
    return PropertyListStorage::adopt(&block->node);
}

template <typename Child>
PropertyList makeContainer(StorageOwner::Kind kind, std::vector<Child>& children) {
    auto* block = new (::operator new(sizeof(ContainerBlock) + children.size() * sizeof(Child)))
        ContainerBlock(kind, children.size());
    auto* place = reinterpret_cast<Child*>(block + 1);
    for (Child& child : children) new (place++) Child(std::move(child));
    PropertyListStorage::measure(block->node);
    return PropertyListStorage::adopt(&block->node);
}

void destroyContainer(ContainerBlock* block) noexcept {
    auto* children = reinterpret_cast<PropertyList*>(block + 1);
    std::size_t count = block->node.count * (block->kind == StorageOwner::Kind::Dictionary ? std::size_t{2} : 1);
    std::destroy_n(children, count);
    delete block->index.load(std::memory_order_acquire);
    block->~ContainerBlock();
    ::operator delete(block);
}
static_assert(sizeof(Entry) == 2 * sizeof(PropertyList));

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

}  // namespace propertylist
