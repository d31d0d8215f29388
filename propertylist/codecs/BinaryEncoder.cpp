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

// The document as it will stand in the file: every distinct value once, in the order in which it is first met, and the
// references of the containers among them.
//
// Equal strings and numbers have one number wherever they come from, unless all of them were read from files, whose
// writers have seen to it; data and containers only when they are the very same value.
class Layout {
public:
    explicit Layout(const Node& top) {
        // Growing would need three times the memory.
        references_.reserve(std::min<std::uint64_t>(PropertyListStorage::weight(top), std::uint64_t{1} << 24));
        numberOf(top);
        // The objects are added while they are walked.
        for (std::size_t i = 0; i < objects_.size(); ++i)
            if (objects_[i]->isContainer()) addReferences(*objects_[i]);
        numbers_.clear(0);
        if (isMerged_[kTexts] || isMerged_[kNumbers]) mergeEqual();
    }

    const std::vector<const Node*>& objects() const { return objects_; }
    const std::vector<std::uint32_t>& references() const { return references_; }

    // Whether the file may stand for a value of that weight.
    bool warrants(std::uint64_t weight) const {
        if (PropertyListStorage::warrants(0, weight)) return true;
        std::uint64_t stored = 0;
        for (const Node* object : objects_) stored += PropertyListStorage::storedWeight(*object);
        return PropertyListStorage::warrants(stored, weight);
    }

private:
    enum Content { kTexts, kNumbers, kNoContent };

    std::size_t placeInFile(const Node& node) const {
        return (reinterpret_cast<std::uintptr_t>(&node) - firstInFile_) / sizeof(Node);
    }

    // Most of what is written was read from one file before, and has numbers already.
    std::uint32_t numberOf(const Node& node) {
        const std::size_t at = placeInFile(node);
        if (at >= numbersInFile_.size()) return numberOfOther(node);
        std::uint32_t& number = numbersInFile_[at];
        return number == HashTable::kMissing ? number = add(node) : number;
    }

    std::uint32_t numberOfOther(const Node& node) {
        const PropertyListDocument* file = fileOf(node);
        if (file && numbersInFile_.empty()) {
            firstInFile_ = reinterpret_cast<std::uintptr_t>(file->nodes);
            numbersInFile_.resize(file->nodeCount, HashTable::kMissing);
            return numbersInFile_[placeInFile(node)] = add(node);
        }
        const std::uint32_t hash = hashOfPlace(node);
        std::uint32_t number = numbers_.find(hash, [&](std::uint32_t other) { return objects_[other] == &node; });
        if (number != HashTable::kMissing) return number;
        number = add(node);
        if (objects_[number] == &node) numbers_.add(hash, number);
        const Content content = contentOf(node);
        if (content != kNoContent && !file) isMerged_[content] = true;
        return number;
    }

    // Keeps neighbours together, so that few lines of the processor's cache are enough to find many of them.
    static std::uint32_t hashOfPlace(const Node& node) {
        const std::uint64_t place = reinterpret_cast<std::uintptr_t>(&node) / sizeof(Node);
        return hashNumber(place / 8) << 3 | static_cast<std::uint32_t>(place % 8);
    }

    // Truth values are merged here: they are the one kind that nearly every change brings in from outside of the file.
    std::uint32_t add(const Node& node) {
        const auto next = static_cast<std::uint32_t>(objects_.size());
        if (node.type == Type::Boolean) {
            std::uint32_t& number = booleans_[node.integer != 0];
            if (number != HashTable::kMissing) return number;
            number = next;
        }
        objects_.push_back(&node);
        return next;
    }

    void addReferences(const Node& container) {
        const bool isDictionary = container.type == Type::Dictionary;
        const auto children = container.children();
        references_.resize(references_.size() + children.size());
        std::uint32_t* reference = references_.data() + references_.size() - children.size();
        if (isDictionary) reference = addKeys(container, reference);
        const std::size_t step = isDictionary ? 2 : 1;
        for (std::size_t i = step - 1; i < children.size(); i += step) *reference++ = numberOf(*children[i].node());
    }

    // All keys come first, then all values. Most dictionaries have the same keys as the one before.
    std::uint32_t* addKeys(const Node& dictionary, std::uint32_t* reference) {
        const std::span<const Entry> entries(dictionary.entries, dictionary.size),
            before = std::exchange(lastEntries_, entries);
        const auto lastKeys = std::exchange(lastKeys_, reference - references_.data());
        if (std::ranges::equal(entries, before, {}, &keyNode, &keyNode))
            return std::copy_n(references_.data() + lastKeys, entries.size(), reference);
        for (const Entry& entry : entries) *reference++ = numberOf(*entry.key.node());
        return reference;
    }
    static const Node* keyNode(const Entry& entry) { return entry.key.node(); }

    void mergeEqual() {
        HashTable merged;
        std::vector<std::uint32_t> newNumbers(objects_.size());
        std::uint32_t kept = 0;
        for (std::size_t i = 0; i < objects_.size(); ++i) {
            const Node& node = *objects_[i];
            const Content content = contentOf(node);
            std::uint32_t number = HashTable::kMissing;
            if (content != kNoContent && isMerged_[content]) {
                const std::uint32_t hash = contentHash(node);
                number = merged.find(hash, [&](std::uint32_t other) { return isSame(*objects_[other], node); });
                if (number == HashTable::kMissing) merged.add(hash, kept);
            }
            if (number == HashTable::kMissing) objects_[number = kept++] = &node;
            newNumbers[i] = number;
        }
        objects_.resize(kept);
        for (std::uint32_t& reference : references_) reference = newNumbers[reference];
    }

    // Null for a value that was not read from a binary file.
    static const PropertyListDocument* fileOf(const Node& node) {
        if (!node.owner || node.owner->kind != StorageOwner::Kind::Document) return nullptr;
        const auto* document = static_cast<const PropertyListDocument*>(node.owner);
        return document->nodeCount > 0 ? document : nullptr;
    }
    static Content contentOf(const Node& node) {
        if (node.type == Type::String) return kTexts;
        bool isNumber = node.type == Type::Integer || node.type == Type::Real || node.type == Type::Date;
        return isNumber ? kNumbers : kNoContent;
    }
    static std::uint32_t contentHash(const Node& node) {
        if (node.type == Type::String) return hashText(node.text());
        return hashNumber(static_cast<std::uint64_t>(node.integer)) + static_cast<std::uint32_t>(node.type);
    }
    static bool isSame(const Node& a, const Node& b) {
        if (a.type != b.type) return false;
        return a.type == Type::String ? a.text() == b.text() : a.integer == b.integer && a.flag == b.flag;
    }

    std::vector<const Node*> objects_;
    std::vector<std::uint32_t> references_;
    std::uintptr_t firstInFile_ = 0;            // the first node of the first file that was met
    std::vector<std::uint32_t> numbersInFile_;  // of the nodes of that file
    HashTable numbers_;                         // of all others
    bool isMerged_[2] = {false, false};         // by Content
    std::span<const Entry> lastEntries_;        // of the dictionary that was walked last
    std::ptrdiff_t lastKeys_ = 0;               // where the references to its keys are
    std::uint32_t booleans_[2] = {HashTable::kMissing, HashTable::kMissing};
};

unsigned widthFor(std::uint64_t largest) {
    return largest <= 0xFF ? 1 : largest <= 0xFFFF ? 2 : largest <= 0xFFFFFFFF ? 4 : 8;
}

// The size of a length or a number that is not negative, with its marker.
std::size_t numberSize(std::uint64_t value) { return 1 + widthFor(value); }
std::size_t headSize(std::uint64_t length) { return length < 15 ? 1 : 1 + numberSize(length); }

std::size_t stringSize(std::string_view text) {
    if (isASCII(text)) return headSize(text.size()) + text.size();
    std::size_t units = utf16Units(text);
    return headSize(units) + 2 * units;
}

std::size_t objectSize(const Node& node, unsigned referenceWidth) {
    switch (node.type) {
        case Type::String:
            return stringSize(node.text());
        case Type::Data:
            return headSize(node.size) + node.size;
        case Type::Integer:
            return node.flag & Node::kUnsigned ? 17 : numberSize(static_cast<std::uint64_t>(node.integer));
        case Type::Array:
        case Type::Dictionary:
            return headSize(node.size) + node.children().size() * referenceWidth;
        default:
            return node.type == Type::Boolean ? 1 : 9;
    }
}

class ObjectWriter {
public:
    explicit ObjectWriter(const Layout& layout)
        : layout_(layout), reference_(layout.references().data()), referenceWidth_(widthFor(objects().size() - 1)) {}

    std::string write() {
        std::size_t tableOffset = kHeaderSize;
        for (const Node* object : objects()) tableOffset += objectSize(*object, referenceWidth_);
        unsigned offsetWidth = widthFor(tableOffset);
        std::size_t size = tableOffset + objects().size() * offsetWidth + kTrailerSize;
        std::string file(size, '\0');
        at_ = file.data();
        append(kBinaryMagic);
        char* offset = file.data() + tableOffset;
        for (const Node* object : objects()) {
            auto position = static_cast<std::uint64_t>(at_ - file.data());
            writeObject(*object);
            offset = storeNumber(offset, position, offsetWidth);
        }
        at_ = offset;
        writeTrailer(offsetWidth, tableOffset);
        return file;
    }

private:
    const std::vector<const Node*>& objects() const { return layout_.objects(); }

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

    void writeString(std::string_view text) {
        if (isASCII(text)) {
            writeHead(kASCIIKind, text.size());
            return append(text);
        }
        writeHead(kUTF16Kind, utf16Units(text));
        at_ = writeUTF16BigEndian(text, at_);
    }

    template <typename Number>
    void writeReferences(std::uint64_t count) {
        for (; count > 0; --count, at_ += sizeof(Number)) {
            Number number = swapped(static_cast<Number>(*reference_++));
            std::memcpy(at_, &number, sizeof number);
        }
    }
    // A loop for each width: most of the bytes of a file are references.
    void writeReferences(std::uint64_t count) {
        if (referenceWidth_ == 1) return writeReferences<std::uint8_t>(count);
        if (referenceWidth_ == 2) return writeReferences<std::uint16_t>(count);
        writeReferences<std::uint32_t>(count);
    }

    void writeObject(const Node& node) {
        switch (node.type) {
            case Type::String:
                return writeString(node.text());
            case Type::Data:
                writeHead(kDataKind, node.size);
                return append(node.text());
            case Type::Integer:
                return writeInteger(node);
            case Type::Real:
                return writeReal(kRealKind << 4 | 3, node.real);
            case Type::Date:
                return writeReal(kDateMarker, secondsSince2001({node.integer}));
            case Type::Array:
                writeHead(kArrayKind, node.size);
                return writeReferences(node.size);
            case Type::Dictionary:
                writeHead(kDictionaryKind, node.size);
                return writeReferences(2 * std::uint64_t{node.size});
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
    return !PropertyListStorage::warrants(0, weight) && !Layout(*value.node()).warrants(weight);
}

std::string encodeBinaryPropertyList(const PropertyList& value) {
    Layout layout(*value.node());
    if (!layout.warrants(PropertyListStorage::weight(*value.node()))) return {};
    return ObjectWriter(layout).write();
}

}  // namespace propertylist
