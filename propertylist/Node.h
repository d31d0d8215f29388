// How property-list values are stored: shared by the value and its codecs, of no concern to anybody else.
//
// Every value is a node. A node that was built is alone in its block and its block is what holders are counted for. The
// nodes of a decoded document are one array with one count for all of them, so that the references among them need no
// counting and the whole is freed at once.
#pragma once

#include "propertylist/Arena.h"
#include "propertylist/Hash.h"
#include "propertylist/PropertyList.h"
#include "propertylist/Texts.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace propertylist {

struct StorageOwner {
    enum class Kind : std::uint8_t { Leaf, Array, Dictionary, Document };
    explicit StorageOwner(Kind k) noexcept : kind(k) {}
    std::atomic<std::size_t> holders{1};
    Kind kind;
};

// The look-up table of a large dictionary, made by the first look-up.
struct DictionaryIndex {
    HashTable table;
    DictionaryIndex* next = nullptr;  // in its document's list
};

struct LateDictionary;

struct PropertyList::Node {
    StorageOwner* owner = nullptr;  // null in the nodes that live forever
    Type type = Type::Nothing;
    std::uint8_t flag = 0;     // of those below; in a container, the decoder's
    std::uint16_t height = 1;  // 1 + the highest child, held at its maximum
    std::uint32_t count = 0;   // of elements or entries; a string's hash
    union {
        std::int64_t integer = 0;  // of a boolean, an integer (the bits of an unsigned one), a date
        double real;
        const char* bytes;
        const PropertyList* elements;
        const Entry* entries;  // just behind an std::atomic<DictionaryIndex*>
        const LateDictionary* late;
    };
    union {
        std::uint64_t length = 0;  // of a string or data
        std::uint64_t weight;      // of a container: its own plus that of its children, held at its maximum
    };

    static constexpr std::uint8_t kASCII = 1, kUnsigned = 1, kCounted = 2, kPacked = 4, kReferring = 8;

    bool isContainer() const { return type == Type::Array || type == Type::Dictionary; }
    bool isPacked() const { return type == Type::Dictionary && (flag & kPacked); }
    bool isReferring() const { return type == Type::Dictionary && (flag & kReferring); }
    bool hasBytes() const { return type == Type::String || type == Type::Data; }
    std::string_view text() const { return {bytes, length}; }
};

struct PropertyListStorage {
    using Node = PropertyList::Node;
    using Entry = PropertyList::Entry;
    using Index = std::atomic<DictionaryIndex*>;

    static constexpr std::uint64_t kMaximumWeight = std::numeric_limits<std::uint64_t>::max() / 4;
    static constexpr std::uint16_t kMaximumHeight = std::numeric_limits<std::uint16_t>::max();

    static PropertyList adopt(const Node* node) noexcept { return PropertyList(node); }
    static void retain(const Node* node) noexcept {
        if (node && node->owner) node->owner->holders.fetch_add(1, std::memory_order_relaxed);
    }
    static void release(const Node* node) noexcept {
        if (node && node->owner && node->owner->holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
            dispose(node->owner);
    }
    static void dispose(StorageOwner* owner) noexcept;

    static PropertyList dictionary(std::vector<Entry>&& entries);
    // The entries of a dictionary. Those that are made when somebody asks for them are then kept.
    static const Entry* entriesOf(const Node& dictionary) {
        return dictionary.isPacked() || dictionary.isReferring() ? lateEntries(dictionary) : dictionary.entries;
    }
    static const Entry* lateEntries(const Node& dictionary);
    static Index& indexOf(const Entry* entries) {
        return *std::launder(reinterpret_cast<Index*>(const_cast<Entry*>(entries)) - 1);
    }

    // A document may hold a value at several places, so that a small file can stand for a vast one. The weight of a
    // value is what somebody who walks all of it meets: one for each value, and more for long texts.
    static constexpr std::uint64_t kBytesPerWeight = 32;
    static std::uint64_t weightOfText(std::uint64_t length) { return 1 + length / kBytesPerWeight; }
    static std::uint64_t weight(const Node& node) {
        if (node.isContainer()) return node.weight;
        return node.hasBytes() ? weightOfText(node.length) : 1;
    }
    // What one of the distinct values of a document adds to the weight that is stored: its references or its text.
    static std::uint64_t storedWeight(const Node& node) {
        if (node.hasBytes()) return node.length / kBytesPerWeight;
        return node.isContainer() ? 1 + (node.type == PropertyList::Type::Array ? 1 : 2) * std::uint64_t{node.count}
                                  : 0;
    }
    static bool warrants(std::uint64_t stored, std::uint64_t weight) {
        return weight <= std::max(std::uint64_t{1} << 22, stored * 64);
    }
    static void beginMeasure(Node& node) { node.height = 1, node.weight = 1; }
    static void measureChild(Node& node, const Node& child) {
        std::uint16_t above =
            child.height == kMaximumHeight ? kMaximumHeight : static_cast<std::uint16_t>(child.height + 1);
        node.height = std::max(node.height, above);
        node.weight = std::min(kMaximumWeight, node.weight + weight(child));
    }
    static void measure(Node& node) {
        beginMeasure(node);
        if (node.type == PropertyList::Type::Array)
            for (std::uint32_t i = 0; i < node.count; ++i) measureChild(node, *node.elements[i].node());
        else
            for (std::uint32_t i = 0; i < node.count; ++i) {
                measureChild(node, *node.entries[i].key.node());
                measureChild(node, *node.entries[i].value.node());
            }
    }
};

// A decoded file: the nodes by object number, the arrays and entries, and the file's own bytes. Or the values of a
// PropertyListArena: no nodes by number, and the text that its strings are parts of.
struct PropertyListDocument : StorageOwner {
    PropertyListDocument(std::shared_ptr<const std::string> fileBytes, std::size_t nodeCount)
        : StorageOwner(Kind::Document), buffer(std::move(fileBytes)), count(nodeCount), texts(arena, buffer) {
        constexpr std::size_t kLine = 64;
        nodes = static_cast<PropertyList::Node*>(
            std::aligned_alloc(kLine, (nodeCount * sizeof *nodes / kLine + 1) * kLine));
        if (!nodes) throw std::bad_alloc();
    }
    ~PropertyListDocument() {
        std::free(nodes);
        for (DictionaryIndex* index = indexes.load(std::memory_order_acquire); index;)
            delete std::exchange(index, index->next);
        for (void* block = blocks.load(std::memory_order_acquire); block;)
            std::free(std::exchange(block, *static_cast<void**>(block)));
    }

    // Takes a block from malloc whose first word is free for a link; from any thread.
    void keepBlock(void* block) noexcept {
        void* next = blocks.load(std::memory_order_relaxed);
        do *static_cast<void**>(block) = next;
        while (!blocks.compare_exchange_weak(next, block, std::memory_order_acq_rel, std::memory_order_relaxed));
    }

    std::shared_ptr<const std::string> buffer;
    std::size_t count;
    unsigned referenceWidth = 0;  // of the file
    PropertyList::Node* nodes = nullptr;
    Arena arena;
    PackedTexts texts;
    std::atomic<DictionaryIndex*> indexes{nullptr};
    std::atomic<void*> blocks{nullptr};
};

}  // namespace propertylist
