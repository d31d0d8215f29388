#include "propertylist/Binary.h"
#include "propertylist/CodecParts.h"
#include "propertylist/Date.h"
#include "propertylist/Packed.h"
#include "propertylist/Unicode.h"

#include <array>
#include <bit>

namespace propertylist {
namespace {

using namespace binary;
using Node = PropertyList::Node;
using Entry = PropertyList::Entry;
using Type = PropertyList::Type;

// Bits held in Node::flag of a container from when the references are followed.
enum State : std::uint8_t { kUnread = 0, kOpen = 1, kDone = 2 };

struct Trailer {
    unsigned offsetWidth = 0, referenceWidth = 0;
    std::uint64_t objectCount = 0, topObject = 0, tableOffset = 0;

    // The table must fill the space between its offset and the trailer, so that a truncated file is found out.
    bool read(std::string_view file) {
        if (file.size() < kHeaderSize + kTrailerSize) return false;
        const char* p = file.data() + file.size() - kTrailerSize;
        offsetWidth = static_cast<unsigned char>(p[6]), referenceWidth = static_cast<unsigned char>(p[7]);
        std::memcpy(&objectCount, p + 8, 8), objectCount = swapped(objectCount);
        std::memcpy(&topObject, p + 16, 8), topObject = swapped(topObject);
        std::memcpy(&tableOffset, p + 24, 8), tableOffset = swapped(tableOffset);
        if (offsetWidth < 1 || offsetWidth > 8 || referenceWidth < 1 || referenceWidth > 8) return false;
        std::uint64_t end = file.size() - kTrailerSize;
        return tableOffset > kHeaderSize && tableOffset < end && topObject < objectCount &&
               objectCount <= (end - tableOffset) / offsetWidth && objectCount * offsetWidth == end - tableOffset &&
               objectCount < HashTable::kMissing;
    }
};

// First pass: every object of the table becomes a node; containers keep where their references stand. No two objects
// may share bytes, which bounds the memory by the size of the file; as overlaps are costly to find, only the sum of the
// lengths is compared.
class ObjectReader {
public:
    ObjectReader(PropertyListDocument& document, const Trailer& trailer)
        : document_(document),
          trailer_(trailer),
          start_(document.buffer->data()),
          end_(start_ + trailer.tableOffset),
          left_(trailer.tableOffset - kHeaderSize) {}

    bool readAll() {
        const char* table = end_;
        for (std::size_t i = 0; i < trailer_.objectCount; ++i, table += trailer_.offsetWidth) {
            std::uint64_t offset = loadNumber(table, trailer_.offsetWidth);
            if (offset < kHeaderSize || offset >= trailer_.tableOffset) return false;
            at_ = start_ + offset;
            Node* node = new (&document_.nodes[i]) Node;
            node->owner = &document_;
            if (!read(*node)) return false;
            auto length = static_cast<std::uint64_t>(at_ - start_) - offset;
            if (length > left_) return false;
            left_ -= length;
        }
        return true;
    }

private:
    bool read(Node& node) {
        auto marker = static_cast<unsigned char>(*at_++);
        unsigned low = marker & 0xF;
        switch (marker >> 4) {
            case kASCIIKind:
                return readBytes(node, Type::String, low) && readASCII(node);
            case kUTF16Kind:
                return readUTF16(node, low);
            case kDictionaryKind:
                return readReferences(node, Type::Dictionary, low, 2);
            case kArrayKind:
                return readReferences(node, Type::Array, low, 1);
            case kIntegerKind:
                return readInteger(node, low);
            case kRealKind:
                return readReal(node, low);
            case kDataKind:
                return readBytes(node, Type::Data, low);
            case kDateMarker >> 4:
                return marker == kDateMarker && readDate(node);
            default:
                node.type = Type::Boolean;
                node.integer = marker == kTrueMarker;
                return marker == kTrueMarker || marker == kFalseMarker;
        }
    }

    std::uint64_t bytesLeft() const { return static_cast<std::uint64_t>(end_ - at_); }

    bool take(std::uint64_t size, const char*& bytes) {
        if (size > bytesLeft()) return false;
        bytes = at_;
        at_ += size;
        return true;
    }

    bool readLength(unsigned low, std::uint64_t& length) {
        length = low;
        if (low != 0xF) return true;
        if (at_ == end_ || (static_cast<unsigned char>(*at_) & 0xF8) != kIntegerKind << 4) return false;
        unsigned width = 1U << (*at_++ & 0x7);
        if (width > 8 || width > bytesLeft()) return false;
        length = loadNumber(at_, width);
        at_ += width;
        return true;
    }

    bool readBytes(Node& node, Type type, unsigned low) {
        node.type = type;
        return readLength(low, node.length) && take(node.length, node.bytes);
    }

    static bool readASCII(Node& node) {
        node.flag = Node::kASCII;
        node.count = hashText(node.text());
        return isASCII(node.text());
    }

    bool readUTF16(Node& node, unsigned low) {
        std::uint64_t units = 0;
        if (!readLength(low, units) || units > bytesLeft() / 2) return false;
        char* text = document_.arena.allocate(units * 3);
        auto length = writeUTF8({at_, units * 2}, ByteOrder::BigEndian, text);
        if (!length) return false;
        at_ += units * 2;
        node.type = Type::String;
        node.bytes = text;
        node.length = *length;
        if (isASCII(node.text())) node.flag = Node::kASCII;
        node.count = hashText(node.text());
        return true;
    }

    bool readReferences(Node& node, Type type, unsigned low, unsigned each) {
        std::uint64_t count = 0;
        if (!readLength(low, count) || count > bytesLeft() / trailer_.referenceWidth / each) return false;
        node.type = type;
        node.flag = kUnread;
        node.count = static_cast<std::uint32_t>(count);
        return count < HashTable::kMissing / 2 && take(count * each * trailer_.referenceWidth, node.bytes);
    }

    // 1, 2 and 4 bytes are without a sign, 8 and 16 with one.
    bool readInteger(Node& node, unsigned low) {
        const char* bytes = nullptr;
        unsigned width = 1U << low;
        if (low > 4 || !take(width, bytes)) return false;
        node.type = Type::Integer;
        std::uint64_t value = loadNumber(width == 16 ? bytes + 8 : bytes, std::min(width, 8U));
        node.integer = static_cast<std::int64_t>(value);
        if (width < 16) return true;
        std::uint64_t high = loadNumber(bytes, 8);
        if (high == 0 && node.integer < 0) node.flag = Node::kUnsigned;
        return high == 0 || (high == ~std::uint64_t{0} && node.integer < 0);
    }

    bool readReal(Node& node, unsigned low) {
        const char* bytes = nullptr;
        if ((low != 2 && low != 3) || !take(std::uint64_t{1} << low, bytes)) return false;
        node.type = Type::Real;
        node.real = low == 3 ? std::bit_cast<double>(loadNumber(bytes, 8))
                             : std::bit_cast<float>(static_cast<std::uint32_t>(loadNumber(bytes, 4)));
        return true;
    }

    bool readDate(Node& node) {
        const char* bytes = nullptr;
        if (!take(8, bytes)) return false;
        auto date = dateFromSecondsSince2001(std::bit_cast<double>(loadNumber(bytes, 8)));
        if (!date) return false;
        node.type = Type::Date;
        node.integer = date->microseconds;
        return true;
    }

    PropertyListDocument& document_;
    const Trailer& trailer_;
    const char *start_, *end_, *at_ = nullptr;
    std::uint64_t left_;
};

// Tells whether the keys of a dictionary are strings and all different. Most dictionaries of a file have the same keys
// in the same order as one just before them, which costs one comparison of bytes to see.
class KeyChecker {
public:
    KeyChecker(const PropertyListDocument& document, unsigned referenceWidth)
        : document_(document), width_(referenceWidth) {}

    enum class Keys { Invalid, Distinct, Repeated };

    Keys check(const char* references, std::uint32_t count) {
        std::string_view raw(references, std::size_t{count} * width_);
        std::string_view& known = known_[slot(raw)];
        if (known == raw) return Keys::Distinct;
        Keys result = examine(references, count);
        if (result == Keys::Distinct) known = raw;
        return result;
    }

private:
    static std::size_t slot(std::string_view raw) {
        if (raw.empty()) return 0;
        auto last = static_cast<unsigned char>(raw.back());
        return (raw.size() * 31 + last) % 64;
    }

    Keys examine(const char* references, std::uint32_t count) {
        seen_.clear(count);
        Keys result = Keys::Distinct;
        for (std::uint32_t i = 0; i < count; ++i, references += width_) {
            std::uint64_t number = loadNumber(references, width_);
            if (number >= document_.count || document_.nodes[number].type != Type::String) return Keys::Invalid;
            const Node& key = document_.nodes[number];
            auto same = [&](std::uint32_t other) { return document_.nodes[other].text() == key.text(); };
            if (seen_.find(key.count, same) != HashTable::kMissing)
                result = Keys::Repeated;
            else
                seen_.add(key.count, static_cast<std::uint32_t>(number));
        }
        return result;
    }

    const PropertyListDocument& document_;
    unsigned width_;
    std::array<std::string_view, 64> known_;
    HashTable seen_;
};

// Second pass: follows the references from the top object, so that cycles, too deep nesting and values that expand
// beyond all measure are found, and makes the arrays and entries of what can be reached.
class ReferenceResolver {
public:
    ReferenceResolver(PropertyListDocument& document, unsigned referenceWidth)
        : document_(document), width_(referenceWidth), keys_(document, referenceWidth) {}

    bool resolve(Node& top) {
        if (!top.isContainer()) return true;
        if (!open(top)) return false;
        while (!path_.empty())
            if (!step()) return false;
        return top.height <= PropertyList::kMaximumDepth && PropertyListStorage::warrants(stored_, top.weight);
    }

private:
    struct Place {
        Node* container;
        std::uint32_t next;
    };

    bool step() {
        Place& place = path_.back();
        Node& container = *place.container;
        while (place.next < childCount(container)) {
            Node& next = child(container, place.next++);
            if (!next.isContainer() || (next.flag & kDone)) continue;
            return next.flag == kUnread && open(next);
        }
        finish(container);
        path_.pop_back();
        return true;
    }

    bool open(Node& container) {
        if (path_.size() == PropertyList::kMaximumDepth) return false;
        bool read = container.type == Type::Array ? readElements(container) : readEntries(container);
        if (!read) return false;
        if (container.flag & kDone) return true;
        container.flag = kOpen;
        path_.push_back({&container, 0});
        return true;
    }

    static std::uint32_t childCount(const Node& container) {
        return container.type == Type::Array ? container.count : 2 * container.count;
    }
    static Node& child(const Node& container, std::uint32_t i) {
        auto* children = container.type == Type::Array ? container.elements
                                                       : reinterpret_cast<const PropertyList*>(container.entries);
        return const_cast<Node&>(*children[i].node());
    }

    Node* nodeAt(const char* reference) const {
        std::uint64_t number = loadNumber(reference, width_);
        return number < document_.count ? &document_.nodes[number] : nullptr;
    }

    bool readElements(Node& array) {
        const char* reference = array.bytes;
        auto* elements = reinterpret_cast<PropertyList*>(document_.arena.allocate(array.count * sizeof(PropertyList)));
        for (std::uint32_t i = 0; i < array.count; ++i, reference += width_) {
            Node* element = nodeAt(reference);
            if (!element) return false;
            place(elements + i, element);
        }
        array.elements = elements;
        return true;
    }

    bool readEntries(Node& dictionary) {
        KeyChecker::Keys keys = keys_.check(dictionary.bytes, dictionary.count);
        if (keys == KeyChecker::Keys::Invalid) return false;
        if (keys == KeyChecker::Keys::Distinct && hasOnlyStrings(dictionary)) return leaveAsItIs(dictionary), true;
        const char* key = dictionary.bytes;
        const char* value = key + std::size_t{dictionary.count} * width_;
        Entry* entries = allocateEntries(dictionary.count);
        for (std::uint32_t i = 0; i < dictionary.count; ++i, key += width_, value += width_) {
            Node* node = nodeAt(value);
            if (!node) return false;
            place(&entries[i].key, nodeAt(key));
            place(&entries[i].value, node);
        }
        dictionary.entries = entries;
        if (keys == KeyChecker::Keys::Repeated) mergeRepeatedKeys(dictionary, entries);
        return true;
    }

    bool hasOnlyStrings(const Node& dictionary) const {
        const char* value = dictionary.bytes + std::size_t{dictionary.count} * width_;
        for (std::uint32_t i = 0; i < dictionary.count; ++i, value += width_) {
            const Node* node = nodeAt(value);
            if (!node || node->type != Type::String) return false;
        }
        return dictionary.count > 0;
    }

    void leaveAsItIs(Node& dictionary) {
        auto* place = document_.arena.allocate(sizeof(ReferringDictionary));
        const char* reference = dictionary.bytes;
        dictionary.late = new (place) ReferringDictionary(reference);
        PropertyListStorage::beginMeasure(dictionary);
        for (std::uint32_t i = 0; i < 2 * dictionary.count; ++i, reference += width_)
            measureChild(dictionary, *nodeAt(reference));
        stored_ += PropertyListStorage::storedWeight(dictionary);
        dictionary.flag = kDone | Node::kReferring;
    }

    Entry* allocateEntries(std::uint32_t count) {
        char* space = document_.arena.allocate(sizeof(PropertyListStorage::Index) + count * sizeof(Entry));
        new (space) PropertyListStorage::Index(nullptr);
        return reinterpret_cast<Entry*>(space + sizeof(PropertyListStorage::Index));
    }

    void place(PropertyList* where, Node* node) {
        // The references within a document are not counted, and nobody ever destroys these.
        new (where) PropertyList(PropertyListStorage::adopt(node));
    }

    // The last value of a key stands where the key came first.
    static void mergeRepeatedKeys(Node& dictionary, Entry* entries) {
        HashTable seen(dictionary.count);
        std::uint32_t kept = 0;
        for (std::uint32_t i = 0; i < dictionary.count; ++i) {
            const Node& key = *entries[i].key.node();
            auto same = [&](std::uint32_t other) { return entries[other].key.node()->text() == key.text(); };
            std::uint32_t at = seen.find(key.count, same);
            if (at == HashTable::kMissing) seen.add(key.count, at = kept++);
            // As bytes: the entries of a document hold nothing.  NOLINTNEXTLINE(bugprone-undefined-memory-manipulation)
            if (at != i) std::memcpy(static_cast<void*>(entries + at), entries + i, sizeof(Entry));
        }
        dictionary.count = kept;
    }

    void finish(Node& container) {
        std::uint32_t count = childCount(container);
        PropertyListStorage::beginMeasure(container);
        for (std::uint32_t i = 0; i < count; ++i) measureChild(container, child(container, i));
        stored_ += PropertyListStorage::storedWeight(container);
        container.flag = kDone;
    }

    void measureChild(Node& container, Node& next) {
        PropertyListStorage::measureChild(container, next);
        if (next.hasBytes() && next.length >= PropertyListStorage::kBytesPerWeight) countOnce(next);
    }

    void countOnce(Node& longText) {
        if (longText.flag & Node::kCounted) return;
        longText.flag |= Node::kCounted;
        stored_ += PropertyListStorage::storedWeight(longText);
    }

    PropertyListDocument& document_;
    unsigned width_;
    KeyChecker keys_;
    std::vector<Place> path_;
    std::uint64_t stored_ = 0;
};

}  // namespace

PropertyList decodeBinaryPropertyList(std::shared_ptr<const std::string> bytes) {
    Trailer trailer;
    if (!trailer.read(*bytes)) return {};
    auto document = std::make_unique<PropertyListDocument>(std::move(bytes), trailer.objectCount);
    document->referenceWidth = trailer.referenceWidth;
    if (!ObjectReader(*document, trailer).readAll()) return {};
    Node& top = document->nodes[trailer.topObject];
    if (!ReferenceResolver(*document, trailer.referenceWidth).resolve(top)) return {};
    (void)document.release();  // the value holds it from here on
    return PropertyListStorage::adopt(&top);
}

}  // namespace propertylist
