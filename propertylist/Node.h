// How property-list values are stored: shared by the value and its codecs, of no concern to anybody else.
//
// Every value is a node. A node that was built alone has a block of memory, and a count of its holders, of its own. The
// nodes of a document share one count: references among them need no counting, and the whole is freed at once.
#pragma once

#include "propertylist/Hash.h"
#include "propertylist/PropertyList.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace propertylist {

// What the holders of a value are counted for.
struct StorageOwner {
    enum class Kind : std::uint8_t { Leaf, Array, Dictionary, Document };
    explicit StorageOwner(Kind k) noexcept : kind(k) {}
    std::atomic<std::size_t> holders{1};
    Kind kind;
};

// The look-up table of a large dictionary, made by the first look-up: positions by the hashes of the keys.
struct DictionaryIndex {
    HashTable table;
    DictionaryIndex* next = nullptr;  // in its document's list
};

// Stands before the elements or entries of every container.
struct ContainerHead {
    std::atomic<DictionaryIndex*> index{nullptr};
    // What somebody who walks all of the value meets, itself included: see PropertyListStorage::weight().
    std::uint64_t weight = 1;
};

struct PropertyList::Node {
    StorageOwner* owner = nullptr;  // null in the nodes that live forever
    union {
        std::int64_t integer = 0;  // of a boolean, an integer (the bits of an unsigned one), a date
        double real;
        const char* bytes;             // of a string or data
        const PropertyList* elements;  // of an array, behind a ContainerHead
        const Entry* entries;          // of a dictionary, likewise
    };
    std::uint32_t size = 0;  // bytes, elements or entries
    Type type = Type::Nothing;
    std::uint8_t flag = 0;     // kUnsigned, or what a decoder needs to remember
    std::uint16_t height = 1;  // 1 + the highest child, held at its maximum

    static constexpr std::uint8_t kUnsigned = 1;  // an integer above INT64_MAX
    static constexpr std::size_t kMaximumSize = std::numeric_limits<std::uint32_t>::max() - 1;

    bool isContainer() const { return type == Type::Array || type == Type::Dictionary; }
    bool hasBytes() const { return type == Type::String || type == Type::Data; }
    std::string_view text() const { return {bytes, size}; }
    // The elements, or keys and values in turn.
    std::span<const PropertyList> children() const {
        if (type == Type::Array) return {elements, size};
        return {reinterpret_cast<const PropertyList*>(entries), 2 * std::size_t{size}};
    }
    ContainerHead& head() const { return *(reinterpret_cast<ContainerHead*>(const_cast<PropertyList*>(elements)) - 1); }
};

// Memory that is freed as a whole.
class Arena {
public:
    Arena() = default;
    Arena(const Arena&) = delete;
    ~Arena() {
        for (void* block : blocks_) std::free(block);
    }
    // Aligned for pointers.
    char* allocate(std::size_t size) {
        size = (size + 7) & ~std::size_t{7};
        if (size > left_) addBlock(size);
        left_ -= size;
        return std::exchange(next_, next_ + size);
    }

private:
    void addBlock(std::size_t atLeast) {
        std::size_t size = std::max(atLeast, blockSize_);
        blocks_.push_back(nullptr);
        blocks_.back() = std::malloc(size);
        if (!blocks_.back()) throw std::bad_alloc();
        blockSize_ = std::min<std::size_t>(blockSize_ * 2, std::size_t{1} << 22);
        next_ = static_cast<char*>(blocks_.back());
        left_ = size;
    }

    std::vector<void*> blocks_;
    char* next_ = nullptr;
    std::size_t left_ = 0, blockSize_ = 1024;
};

// A decoded file, or what a PropertyListArena has made.
struct PropertyListDocument : StorageOwner {
    explicit PropertyListDocument(std::shared_ptr<const std::string> keptText)
        : StorageOwner(Kind::Document), text(std::move(keptText)) {}
    ~PropertyListDocument() {
        for (DictionaryIndex* index = indexes.load(std::memory_order_acquire); index;)
            delete std::exchange(index, index->next);
    }

    // Room for the children of a container, with a head before it.
    PropertyList* allocateChildren(std::size_t count) {
        auto* head = new (arena.allocate(sizeof(ContainerHead) + count * sizeof(PropertyList))) ContainerHead;
        return reinterpret_cast<PropertyList*>(head + 1);
    }

    std::shared_ptr<const std::string> text;  // of which the strings may be parts
    PropertyList::Node* nodes = nullptr;      // of a decoded file, by object number, in the arena
    std::size_t nodeCount = 0;
    Arena arena;
    std::atomic<DictionaryIndex*> indexes{nullptr};
};

struct PropertyListStorage {
    using Node = PropertyList::Node;

    static PropertyList adopt(const Node* node) noexcept { return PropertyList(node); }
    static void retain(const Node* node) noexcept {
        if (node && node->owner) node->owner->holders.fetch_add(1, std::memory_order_relaxed);
    }
    static void release(const Node* node) noexcept {
        if (node && node->owner && node->owner->holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
            dispose(node->owner);
    }
    static void dispose(StorageOwner* owner) noexcept;
    static PropertyList dictionary(std::vector<PropertyList::Entry>&& entries);

    // A document may hold a value at several places, so that a small file can stand for a vast one. The weight of a
    // value is what somebody who walks all of it meets: one for each value, and more for long texts.
    static constexpr std::uint64_t kBytesPerWeight = 32;
    static constexpr std::uint64_t kMaximumWeight = std::numeric_limits<std::uint64_t>::max() / 4;
    static std::uint64_t weight(const Node& node) {
        if (node.isContainer()) return node.head().weight;
        return node.hasBytes() ? 1 + node.size / kBytesPerWeight : 1;
    }
    // What one of the distinct values adds to the weight that is stored: its references or its text.
    static std::uint64_t storedWeight(const Node& node) {
        if (node.hasBytes()) return node.size / kBytesPerWeight;
        return node.isContainer() ? 1 + std::uint64_t{node.children().size()} : 0;
    }
    // Whether that much may stand for a value of that weight.
    static bool warrants(std::uint64_t stored, std::uint64_t weight) {
        return weight <= std::max(std::uint64_t{1} << 22, stored * 64);
    }
    // Sets the height and the weight of a container whose children have theirs.
    static void measure(Node& container) {
        constexpr std::uint16_t kMaximumHeight = std::numeric_limits<std::uint16_t>::max();
        std::uint16_t highest = 0;
        std::uint64_t sum = 1;
        for (const PropertyList& child : container.children()) {
            highest = std::max(highest, child.node()->height);
            sum = std::min(kMaximumWeight, sum + weight(*child.node()));
        }
        container.height = highest == kMaximumHeight ? kMaximumHeight : static_cast<std::uint16_t>(highest + 1);
        container.head().weight = sum;
    }
};

}  // namespace propertylist
