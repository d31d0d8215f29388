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

constexpr std::uint32_t kMissing = HashTable::kMissing;

// A value, or a string that has no node: the characters of a packed dictionary.
class Object {
public:
    explicit Object(const Node* node) : at_(node) {}
    explicit Object(std::string_view text)
        : at_(text.data()),
          length_(static_cast<std::uint32_t>(text.size())),
          form_(propertylist::isASCII(text) ? Form::ASCII : Form::Other) {}

    // Null for a string without one.
    const Node* node() const { return form_ == Form::Value ? static_cast<const Node*>(at_) : nullptr; }
    bool isString() const { return form_ != Form::Value || node()->type == Type::String; }
    bool isASCII() const { return form_ == Form::Value ? node()->flag & Node::kASCII : form_ == Form::ASCII; }
    // Of a string or data.
    std::string_view text() const {
        return form_ == Form::Value ? node()->text() : std::string_view(static_cast<const char*>(at_), length_);
    }
    std::uint64_t storedWeight() const {
        if (form_ == Form::Value) return PropertyListStorage::storedWeight(*node());
        return PropertyListStorage::weightOfText(length_) - 1;
    }

private:
    enum class Form : std::uint8_t { Value, ASCII, Other };

    const void* at_;
    std::uint32_t length_ = 0;
    Form form_ = Form::Value;
};

std::uint32_t identityHash(const Node* node) { return hashNumber(reinterpret_cast<std::uintptr_t>(node)); }

// Gives every distinct value its object number. Equal strings and numbers that were built get one number; longer texts,
// data and containers only when they are the very same value. The nodes of decoded documents have numbers already, by
// which a plain table finds them: most of what is written was read before.
class ObjectNumbers {
public:
    explicit ObjectNumbers(const Node* top) {
        // Growing would need three times the memory. What is reserved in vain is never touched, and so costs nothing.
        if (const std::uint64_t weight = PropertyListStorage::weight(*top); weight > kLarge)
            objects_.reserve(std::min(weight, kMostReserved));
        if (const PropertyListDocument* document = documentOf(top)) addTable(document);
        numberOf(top);
    }

    const std::vector<Object>& objects() const { return objects_; }

    // Nearly every reference is one to a node of the main document that has been met before.
    std::uint32_t numberOf(const Node* node) {
        if (std::size_t at = main_.position(node); at < main_.size && main_.numbers[at] != 0)
            return main_.numbers[at] - 1;
        return numberOfOther(node);
    }

    // The same for a string without a node. It is compared with those that came not long before and with those that
    // were built, and may stand in the file once more than it need.
    std::uint32_t numberOf(std::string_view text) {
        if (!isMerging_[true]) startMerging(true);
        if (recent_.empty()) recent_.resize(kRecent);
        const std::uint32_t hash = hashText(text);
        Recent& recent = recent_[hash % kRecent];
        auto same = [&](std::uint32_t number) { return isSameString(objects_[number], text); };
        if (recent.plusOne != 0 && recent.hash == hash && same(recent.plusOne - 1)) return recent.plusOne - 1;
        std::uint32_t number = index_.find(hash, same);
        if (number == kMissing) number = append(Object(text));
        recent = {hash, number + 1};
        return number;
    }

private:
    static constexpr std::uint64_t kLarge = std::uint64_t{1} << 20, kMostReserved = kLarge << 4;
    static constexpr std::size_t kRecent = 4096;
    struct Recent {
        std::uint32_t hash = 0, plusOne = 0;
    };
    struct Table {
        std::uintptr_t first = 0;
        std::size_t size = 0;
        std::uint32_t* numbers = nullptr;  // + 1

        std::size_t position(const Node* node) const {
            return (reinterpret_cast<std::uintptr_t>(node) - first) / sizeof(Node);
        }
    };
    struct Free {
        void operator()(std::uint32_t* numbers) const { std::free(numbers); }
    };
    static constexpr std::size_t kMostTables = 4;
    static constexpr std::uint64_t kLongestMerged = 1024;

    static const PropertyListDocument* documentOf(const Node* node) {
        if (!node->owner || node->owner->kind != StorageOwner::Kind::Document) return nullptr;
        auto* document = static_cast<const PropertyListDocument*>(node->owner);
        return document->count > 0 ? document : nullptr;
    }

    void addTable(const PropertyListDocument* document) {
        // Zeroed pages that are never touched cost nothing, however large the document.
        auto* numbers = static_cast<std::uint32_t*>(std::calloc(document->count, sizeof(std::uint32_t)));
        if (!numbers) throw std::bad_alloc();
        memory_.emplace_back(numbers);
        objects_.reserve(objects_.size() + document->count);
        tables_.push_back({reinterpret_cast<std::uintptr_t>(document->nodes), document->count, numbers});
        if (tables_.back().size > main_.size) main_ = tables_.back();
    }

    std::uint32_t numberOfOther(const Node* node) {
        for (const Table& table : tables_)
            if (std::size_t at = table.position(node); at < table.size) return numberAt(table.numbers[at], node);
        if (const PropertyListDocument* document = documentOf(node); document && tables_.size() < kMostTables) {
            addTable(document);
            return numberOf(node);
        }
        return node->type == Type::Boolean ? numberAt(booleans_[node->integer != 0], node) : numberOfBuilt(node);
    }

    std::uint32_t numberAt(std::uint32_t& plusOne, const Node* node) {
        return plusOne != 0 ? plusOne - 1 : (plusOne = add(node) + 1) - 1;
    }

    std::uint32_t append(Object object) {
        auto number = static_cast<std::uint32_t>(objects_.size());
        objects_.push_back(object);
        return number;
    }

    std::uint32_t add(const Node* node) {
        std::uint32_t number = append(Object(node));
        if (isMerged(*node) && isMerging_[isString(*node)]) index_.add(contentHash(*node), number);
        return number;
    }

    // Until a string that was built may equal one that was read, no string needs to be found by its content; the same
    // for numbers, of which there are few.
    void startMerging(bool strings) {
        isMerging_[strings] = true;
        for (std::uint32_t number = 0; number < objects_.size(); ++number) {
            const Node* node = objects_[number].node();
            if (node && isMerged(*node) && isString(*node) == strings) index_.add(contentHash(*node), number);
        }
    }

    std::uint32_t numberOfBuilt(const Node* node) {
        bool merged = isMerged(*node);
        if (merged && !isMerging_[isString(*node)]) startMerging(isString(*node));
        std::uint32_t hash = merged ? contentHash(*node) : identityHash(node);
        auto same = [&](std::uint32_t number) {
            const Node* other = objects_[number].node();
            return other == node || (other && merged && sameContent(*other, *node));
        };
        std::uint32_t number = index_.find(hash, same);
        if (number != kMissing) return number;
        number = add(node);
        if (!merged) index_.add(hash, number);
        return number;
    }

    static bool isString(const Node& node) { return node.type == Type::String; }
    static bool isMerged(const Node& node) {
        if (node.type == Type::String) return node.length <= kLongestMerged;
        return node.type == Type::Integer || node.type == Type::Real || node.type == Type::Date;
    }
    static std::uint32_t contentHash(const Node& node) {
        if (node.type == Type::String) return node.count;
        return hashNumber(static_cast<std::uint64_t>(node.integer)) + static_cast<std::uint32_t>(node.type);
    }
    static bool isSameString(const Object& object, std::string_view text) {
        return object.isString() && object.text() == text;
    }
    static bool sameContent(const Node& a, const Node& b) {
        if (a.type != b.type) return false;
        if (a.type == Type::String) return a.text() == b.text();
        return a.integer == b.integer && a.flag == b.flag;
    }

    std::vector<Object> objects_;
    std::vector<Recent> recent_;  // by hash, once there are such strings
    std::vector<std::unique_ptr<std::uint32_t, Free>> memory_;
    std::vector<Table> tables_;
    Table main_;                          // the largest
    HashTable index_;                     // by content what is merged, by address what is not
    bool isMerging_[2] = {false, false};  // numbers, strings
    std::uint32_t booleans_[2] = {0, 0};
};

// The document as it will stand in the file: the objects in order and the references of the containers among them.
struct Layout {
    explicit Layout(const Node* top) : numbers(top) {
        references.reserve(std::min<std::uint64_t>(PropertyListStorage::weight(*top), std::uint64_t{1} << 24));
        // The objects are added while they are walked.
        for (std::size_t i = 0; i < numbers.objects().size(); ++i) {
            const Object object = numbers.objects()[i];
            stored += object.storedWeight();
            if (const Node* node = object.node(); node && node->isContainer()) addReferences(*node);
        }
    }

    void addReferences(const Node& node) {
        if (node.isPacked()) return addPacked(PackedView(node));
        std::size_t at = references.size();
        if (node.type == Type::Array) {
            references.resize(at + node.count);
            for (std::uint32_t i = 0; i < node.count; ++i)
                references[at + i] = numbers.numberOf(node.elements[i].node());
            return;
        }
        references.resize(at + 2 * std::size_t{node.count});
        if (node.isReferring()) return addReferring(ReferringView(node), at);
        for (std::uint32_t i = 0; i < node.count; ++i)
            references[at + i] = numbers.numberOf(node.entries[i].key.node());
        at += node.count;
        for (std::uint32_t i = 0; i < node.count; ++i)
            references[at + i] = numbers.numberOf(node.entries[i].value.node());
    }

    void addReferring(const ReferringView& dictionary, std::size_t at) {
        for (std::uint32_t i = 0; i < dictionary.count(); ++i) references[at + i] = numbers.numberOf(dictionary.key(i));
        at += dictionary.count();
        for (std::uint32_t i = 0; i < dictionary.count(); ++i)
            references[at + i] = numbers.numberOf(dictionary.value(i));
    }

    void addPacked(const PackedView& dictionary) {
        const std::size_t at = references.size(), count = dictionary.count();
        references.resize(at + 2 * count);
        // Most have the keys of one just before.
        KnownKeys& known = knownKeys[reinterpret_cast<std::uintptr_t>(&dictionary.keys()) / 16 % knownKeys.size()];
        if (known.keys == &dictionary.keys())
            std::copy_n(references.data() + known.at, count, references.data() + at);
        else
            for (std::uint32_t i = 0; i < count; ++i) references[at + i] = numbers.numberOf(dictionary.key(i));
        known = {&dictionary.keys(), at};
        for (std::uint32_t i = 0; i < count; ++i) references[at + count + i] = numbers.numberOf(dictionary.value(i));
    }

    struct KnownKeys {
        const PackedKeys* keys = nullptr;
        std::size_t at = 0;  // where the references to these keys stand
    };

    ObjectNumbers numbers;
    std::vector<std::uint32_t> references;
    std::uint64_t stored = 0;
    std::array<KnownKeys, 64> knownKeys;
};

unsigned widthFor(std::uint64_t largest) {
    return largest <= 0xFF ? 1 : largest <= 0xFFFF ? 2 : largest <= 0xFFFFFFFF ? 4 : 8;
}

// The size of a length or a number that is not negative, with its marker.
std::size_t numberSize(std::uint64_t value) { return 1 + widthFor(value); }
std::size_t headSize(std::uint64_t length) { return length < 15 ? 1 : 1 + numberSize(length); }

std::size_t stringSize(std::string_view text, bool isASCII) {
    if (isASCII) return headSize(text.size()) + text.size();
    std::size_t units = utf16Units(text);
    return headSize(units) + 2 * units;
}

std::size_t objectSize(const Object& object, unsigned referenceWidth) {
    if (object.isString()) return stringSize(object.text(), object.isASCII());
    const Node& node = *object.node();
    switch (node.type) {
        case Type::Data:
            return headSize(node.length) + node.length;
        case Type::Integer:
            return node.flag & Node::kUnsigned ? 17 : numberSize(static_cast<std::uint64_t>(node.integer));
        case Type::Array:
            return headSize(node.count) + std::size_t{node.count} * referenceWidth;
        case Type::Dictionary:
            return headSize(node.count) + 2 * std::size_t{node.count} * referenceWidth;
        default:
            return node.type == Type::Boolean ? 1 : 9;
    }
}

class ObjectWriter {
public:
    explicit ObjectWriter(const Layout& layout)
        : layout_(layout), reference_(layout.references.data()), referenceWidth_(widthFor(objects().size() - 1)) {}

    std::string write() {
        std::size_t tableOffset = kHeaderSize;
        for (const Object& object : objects()) tableOffset += objectSize(object, referenceWidth_);
        unsigned offsetWidth = widthFor(tableOffset);
        std::size_t size = tableOffset + objects().size() * offsetWidth + kTrailerSize;
        std::string file(size, '\0');
        at_ = file.data();
        append("bplist00");
        char* offset = file.data() + tableOffset;
        for (const Object& object : objects()) {
            auto position = static_cast<std::uint64_t>(at_ - file.data());
            object.isString() ? writeString(object.text(), object.isASCII()) : writeObject(*object.node());
            offset = storeNumber(offset, position, offsetWidth);
        }
        at_ = offset;
        writeTrailer(offsetWidth, tableOffset);
        return file;
    }

private:
    const std::vector<Object>& objects() const { return layout_.numbers.objects(); }

    void append(std::string_view bytes) {
        if (!bytes.empty()) std::memcpy(at_, bytes.data(), bytes.size());
        at_ += bytes.size();
    }
    void writeMarker(unsigned marker) { *at_++ = static_cast<char>(marker); }

    void writeHead(Kind kind, std::uint64_t length) {
        writeMarker(static_cast<unsigned>(kind) << 4 | static_cast<unsigned>(std::min<std::uint64_t>(length, 15)));
        if (length >= 15) writeUnsigned(length);
    }

    void writeUnsigned(std::uint64_t value) {
        unsigned width = widthFor(value);
        writeMarker(kIntegerKind << 4 | static_cast<unsigned>(std::countr_zero(width)));
        at_ = storeNumber(at_, value, width);
    }

    void writeInteger(const Node& node) {
        auto bits = static_cast<std::uint64_t>(node.integer);
        if (!(node.flag & Node::kUnsigned)) return writeUnsigned(bits);
        writeMarker(kIntegerKind << 4 | 4);
        at_ = storeNumber(at_, 0, 8);
        at_ = storeNumber(at_, bits, 8);
    }

    void writeReal(unsigned marker, double value) {
        writeMarker(marker);
        at_ = storeNumber(at_, std::bit_cast<std::uint64_t>(value), 8);
    }

    void writeString(std::string_view text, bool isASCII) {
        if (isASCII) {
            writeHead(kASCIIKind, text.size());
            return append(text);
        }
        writeHead(kUTF16Kind, utf16Units(text));
        at_ = writeUTF16BigEndian(text, at_);
    }

    void writeReferences(std::uint64_t count) {
        for (; count > 0; --count) at_ = storeNumber(at_, *reference_++, referenceWidth_);
    }

    void writeObject(const Node& node) {
        switch (node.type) {
            case Type::Data:
                writeHead(kDataKind, node.length);
                return append(node.text());
            case Type::Integer:
                return writeInteger(node);
            case Type::Real:
                return writeReal(kRealKind << 4 | 3, node.real);
            case Type::Date:
                return writeReal(kDateMarker, secondsSince2001({node.integer}));
            case Type::Array:
                writeHead(kArrayKind, node.count);
                return writeReferences(node.count);
            case Type::Dictionary:
                writeHead(kDictionaryKind, node.count);
                return writeReferences(2 * std::uint64_t{node.count});
            default:
                writeMarker(node.integer ? kTrueMarker : kFalseMarker);
        }
    }

    void writeTrailer(unsigned offsetWidth, std::uint64_t tableOffset) {
        at_ = storeNumber(at_, offsetWidth << 8 | referenceWidth_, 8);
        at_ = storeNumber(at_, objects().size(), 8);
        at_ = storeNumber(at_, 0, 8);
        at_ = storeNumber(at_, tableOffset, 8);
    }

    const Layout& layout_;
    const std::uint32_t* reference_;
    unsigned referenceWidth_;
    char* at_ = nullptr;
};

}  // namespace

bool expandsTooFar(const PropertyList& value) {
    std::uint64_t weight = PropertyListStorage::weight(*value.node());
    return !PropertyListStorage::warrants(0, weight) &&
           !PropertyListStorage::warrants(Layout(value.node()).stored, weight);
}

std::string encodeBinaryPropertyList(const PropertyList& value) {
    Layout layout(value.node());
    if (!PropertyListStorage::warrants(layout.stored, PropertyListStorage::weight(*value.node()))) return {};
    return ObjectWriter(layout).write();
}

}  // namespace propertylist
