#include "propertylist/Date.h"
#include "propertylist/Node.h"
#include "propertylist/Unicode.h"
#include "propertylist/codecs/CodecParts.h"

#include <bit>

namespace propertylist {
namespace {

using namespace binary;
using Node = PropertyList::Node;
using Entry = PropertyList::Entry;
using Type = PropertyList::Type;

// In Node::flag: of a container, how far its references have been followed; of a text, whether its length is counted.
enum State : std::uint8_t { kUnread = 0, kOpen = 1, kDone = 2 };

struct Trailer {
    unsigned offsetWidth = 0, referenceWidth = 0;
    std::uint64_t objectCount = 0, topObject = 0, tableOffset = 0;

    // The table must fill the space between its offset and the trailer, so that a truncated file is found out.
    bool read(std::string_view file, DecodeProblem& problem) {
        if (file.size() < kHeaderSize + kTrailerSize)
            problem = {file.size(), "unexpected end"};
        else if (read(file))
            return true;
        else
            problem = {file.size() - kTrailerSize, "trailer that does not fit the file"};
        return false;
    }

    // Where the table has the offset of an object.
    std::size_t placeOfOffset(std::size_t object) const { return tableOffset + object * offsetWidth; }

private:
    bool read(std::string_view file) {
        const char* p = file.data() + file.size() - kTrailerSize;
        offsetWidth = static_cast<unsigned char>(p[6]);
        referenceWidth = static_cast<unsigned char>(p[7]);
        objectCount = loadNumber(p + 8, 8);
        topObject = loadNumber(p + 16, 8);
        tableOffset = loadNumber(p + 24, 8);
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
    ObjectReader(PropertyListDocument& document, const Trailer& trailer, DecodeProblem& problem)
        : document_(document),
          trailer_(trailer),
          problem_(problem),
          start_(document.text->data()),
          end_(start_ + trailer.tableOffset),
          left_(trailer.tableOffset - kHeaderSize) {}

    bool readAll() {
        const char* table = end_;
        for (std::size_t i = 0; i < trailer_.objectCount; ++i, table += trailer_.offsetWidth) {
            std::uint64_t offset = loadNumber(table, trailer_.offsetWidth);
            if (offset < kHeaderSize || offset >= trailer_.tableOffset)
                return refuse("offset outside the objects", trailer_.placeOfOffset(i));
            at_ = start_ + offset;
            Node* node = new (&document_.nodes[i]) Node;
            node->owner = &document_;
            if (!read(*node)) return refuse(reason_, offset);
            auto length = static_cast<std::uint64_t>(at_ - start_) - offset;
            if (length > left_) return refuse("objects that share bytes", offset);
            left_ -= length;
        }
        return true;
    }

private:
    bool refuse(const char* reason, std::uint64_t position) {
        problem_ = {position, reason};
        return false;
    }
    // Why the object at hand is malformed.
    bool refuse(const char* reason) {
        reason_ = reason;
        return false;
    }

    bool read(Node& node) {
        auto marker = static_cast<unsigned char>(*at_++);
        unsigned low = marker & 0xF;
        switch (marker >> 4) {
            case kASCIIKind:
                return readBytes(node, Type::String, low) && (isASCII(node.text()) || refuse("text that is not ASCII"));
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
            default:
                return marker == kDateMarker ? readDate(node) : readBoolean(node, marker);
        }
    }

    bool readBoolean(Node& node, unsigned marker) {
        node.type = Type::Boolean;
        node.integer = marker == kTrueMarker;
        return marker == kTrueMarker || marker == kFalseMarker || refuse("unknown kind of object");
    }

    std::uint64_t bytesLeft() const { return static_cast<std::uint64_t>(end_ - at_); }

    bool take(std::uint64_t size, const char*& bytes) {
        if (size > bytesLeft()) return refuse(kTooLong);
        bytes = at_;
        at_ += size;
        return true;
    }

    bool readLength(unsigned low, std::uint64_t& length) {
        length = low;
        if (low != 0xF) return true;
        if (at_ == end_ || (static_cast<unsigned char>(*at_) & 0xF8) != kIntegerKind << 4)
            return refuse("malformed length");
        unsigned width = 1U << (*at_++ & 0x7);
        if (width > 8 || width > bytesLeft()) return refuse("malformed length");
        length = loadNumber(at_, width);
        at_ += width;
        return true;
    }

    bool readBytes(Node& node, Type type, unsigned low) {
        std::uint64_t length = 0;
        if (!readLength(low, length)) return false;
        if (length > Node::kMaximumSize) return refuse(kTooLong);
        node.type = type;
        node.size = static_cast<std::uint32_t>(length);
        return take(length, node.bytes);
    }

    bool readUTF16(Node& node, unsigned low) {
        std::uint64_t units = 0;
        if (!readLength(low, units)) return false;
        if (units > std::min<std::uint64_t>(bytesLeft() / 2, Node::kMaximumSize / 3)) return refuse(kTooLong);
        char* text = document_.arena.allocate(units * 3);
        bool isWellFormed = true;
        const char* end = writeUTF8({at_, units * 2}, ByteOrder::BigEndian, text, isWellFormed);
        at_ += units * 2;
        node.type = Type::String;
        node.bytes = text;
        node.size = static_cast<std::uint32_t>(end - text);
        return isWellFormed || refuse("invalid UTF-16");
    }

    bool readReferences(Node& node, Type type, unsigned low, unsigned each) {
        std::uint64_t count = 0;
        if (!readLength(low, count)) return false;
        if (count > bytesLeft() / trailer_.referenceWidth / each || count >= Node::kMaximumSize / 2)
            return refuse(kTooLong);
        node.type = type;
        node.size = static_cast<std::uint32_t>(count);
        return take(count * each * trailer_.referenceWidth, node.bytes);
    }

    // 1, 2 and 4 bytes are without a sign, 8 and 16 with one.
    bool readInteger(Node& node, unsigned low) {
        const char* bytes = nullptr;
        unsigned width = 1U << low;
        if (low > 4) return refuse(kWideInteger);
        if (!take(width, bytes)) return false;
        node.type = Type::Integer;
        std::uint64_t value = loadNumber(width == 16 ? bytes + 8 : bytes, std::min(width, 8U));
        node.integer = static_cast<std::int64_t>(value);
        if (width < 16) return true;
        std::uint64_t high = loadNumber(bytes, 8);
        if (high == 0 && node.integer < 0) node.flag = Node::kUnsigned;
        return high == 0 || (high == ~std::uint64_t{0} && node.integer < 0) || refuse(kWideInteger);
    }

    bool readReal(Node& node, unsigned low) {
        const char* bytes = nullptr;
        if (low != 2 && low != 3) return refuse("real of an unknown width");
        if (!take(std::uint64_t{1} << low, bytes)) return false;
        node.type = Type::Real;
        node.real = low == 3 ? std::bit_cast<double>(loadNumber(bytes, 8))
                             : std::bit_cast<float>(static_cast<std::uint32_t>(loadNumber(bytes, 4)));
        return true;
    }

    bool readDate(Node& node) {
        const char* bytes = nullptr;
        if (!take(8, bytes)) return false;
        auto date = dateFromSecondsSince2001(std::bit_cast<double>(loadNumber(bytes, 8)));
        if (!date) return refuse("date out of range");
        node.type = Type::Date;
        node.integer = date->microseconds;
        return true;
    }

    static constexpr const char* kTooLong = "object that is longer than the file";
    static constexpr const char* kWideInteger = "integer that 64 bits cannot hold";

    PropertyListDocument& document_;
    const Trailer& trailer_;
    DecodeProblem& problem_;
    const char* reason_ = nullptr;
    const char *start_, *end_, *at_ = nullptr;
    std::uint64_t left_;
};

// Second pass: follows the references from the top object, so that cycles, too deep nesting and values that expand
// beyond all measure are found, and makes the elements and entries of what can be reached.
class ReferenceResolver {
public:
    ReferenceResolver(PropertyListDocument& document, const Trailer& trailer, DecodeProblem& problem)
        : document_(document), trailer_(trailer), width_(trailer.referenceWidth), problem_(problem) {}

    bool resolve(Node& top) {
        if (!top.isContainer()) return true;
        if (!open(top)) return false;
        while (!path_.empty())
            if (!step()) return false;
        if (top.height > PropertyList::kMaximumDepth) return refuse(kTooDeep, top);
        return PropertyListStorage::warrants(stored_, top.head().weight) || refuse("far more values than bytes", top);
    }

private:
    bool refuse(const char* reason, const Node& object) {
        const auto number = static_cast<std::size_t>(&object - document_.nodes);
        const char* offset = document_.text->data() + trailer_.placeOfOffset(number);
        problem_ = {loadNumber(offset, trailer_.offsetWidth), reason};
        return false;
    }
    bool refuse(const char* reason, const char* where) {
        problem_ = {static_cast<std::size_t>(where - document_.text->data()), reason};
        return false;
    }

    struct Place {
        Node* container;
        std::size_t next;  // of its children
    };

    bool step() {
        Place& place = path_.back();
        const auto children = place.container->children();
        while (place.next < children.size()) {
            auto& next = const_cast<Node&>(*children[place.next++].node());
            if (!next.isContainer() || next.flag == kDone) continue;
            return next.flag == kUnread ? open(next) : refuse("array or dictionary that holds itself", next);
        }
        finish(*place.container);
        path_.pop_back();
        return true;
    }

    bool open(Node& container) {
        if (path_.size() == PropertyList::kMaximumDepth) return refuse(kTooDeep, container);
        if (!(container.type == Type::Array ? readElements(container) : readEntries(container))) return false;
        container.flag = kOpen;
        path_.push_back({&container, 0});
        return true;
    }

    // The references within a document are not counted, and nobody ever destroys these.
    bool place(PropertyList* where, const char* reference) {
        const std::uint64_t number = loadNumber(reference, width_);
        if (number >= document_.nodeCount) return refuse("reference to no object", reference);
        new (where) PropertyList(PropertyListStorage::adopt(&document_.nodes[number]));
        return true;
    }

    bool readElements(Node& array) {
        const char* reference = array.bytes;
        PropertyList* elements = document_.allocateChildren(array.size);
        for (std::uint32_t i = 0; i < array.size; ++i, reference += width_)
            if (!place(elements + i, reference)) return false;
        array.elements = elements;
        return true;
    }

    // First come the references to all keys, then those to the values.
    bool readEntries(Node& dictionary) {
        const std::string_view keys(dictionary.bytes, std::size_t{dictionary.size} * width_);
        const char *key = keys.data(), *value = key + keys.size();
        PropertyList* children = document_.allocateChildren(2 * std::size_t{dictionary.size});
        for (std::uint32_t i = 0; i < dictionary.size; ++i, key += width_, value += width_) {
            if (!place(children + 2 * std::size_t{i}, key) || !place(children + 2 * std::size_t{i} + 1, value))
                return false;
            if (children[2 * std::size_t{i}].node()->type != Type::String) return refuse("key that is no text", key);
        }
        dictionary.elements = children;
        mergeRepeatedKeys(dictionary, keys);
        return true;
    }

    // The last value of a key stands where the key came first. Most dictionaries of a file have the same keys in the
    // same order as one just before them, which costs one comparison of bytes to see.
    void mergeRepeatedKeys(Node& dictionary, std::string_view references) {
        std::string_view& known = withDifferentKeys_[dictionary.size % std::size(withDifferentKeys_)];
        if (known == references) return;
        seen_.clear(dictionary.size);
        auto* entries = const_cast<Entry*>(dictionary.entries);
        std::uint32_t kept = 0;
        for (std::uint32_t i = 0; i < dictionary.size; ++i) {
            const std::string_view key = entries[i].key.node()->text();
            const std::uint32_t hash = hashText(key);
            auto same = [&](std::uint32_t other) { return entries[other].key.node()->text() == key; };
            std::uint32_t at = seen_.find(hash, same);
            if (at == HashTable::kMissing) seen_.add(hash, at = kept++);
            // As bytes: the entries of a document hold nothing.  NOLINTNEXTLINE(bugprone-undefined-memory-manipulation)
            if (at != i) std::memcpy(static_cast<void*>(entries + at), entries + i, sizeof(Entry));
        }
        if (kept == dictionary.size) known = references;
        dictionary.size = kept;
    }

    void finish(Node& container) {
        PropertyListStorage::measure(container);
        stored_ += PropertyListStorage::storedWeight(container);
        for (const PropertyList& child : container.children()) {
            auto& text = const_cast<Node&>(*child.node());
            if (!text.hasBytes() || text.size < PropertyListStorage::kBytesPerWeight || text.flag == kDone) continue;
            stored_ += PropertyListStorage::storedWeight(text);
            text.flag = kDone;
        }
        container.flag = kDone;
    }

    PropertyListDocument& document_;
    const Trailer& trailer_;
    unsigned width_;  // of a reference
    DecodeProblem& problem_;
    std::string_view withDifferentKeys_[64];  // the references to the keys of dictionaries, by their number
    HashTable seen_;
    std::vector<Place> path_;
    std::uint64_t stored_ = 0;
};

}  // namespace

PropertyList decodeBinaryPropertyList(std::shared_ptr<const std::string> bytes, DecodeProblem& problem) {
    Trailer trailer;
    if (!trailer.read(*bytes, problem)) return {};
    auto document = std::make_unique<PropertyListDocument>(std::move(bytes));
    document->nodeCount = trailer.objectCount;
    document->nodes = reinterpret_cast<Node*>(document->arena.allocate(document->nodeCount * sizeof(Node)));
    if (!ObjectReader(*document, trailer, problem).readAll()) return {};
    Node& top = document->nodes[trailer.topObject];
    if (!ReferenceResolver(*document, trailer, problem).resolve(top)) return {};
    (void)document.release();  // the value holds it from here on
    return PropertyListStorage::adopt(&top);
}

}  // namespace propertylist
