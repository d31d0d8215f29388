// Dictionaries of strings in two compact forms. A font catalogue holds many thousands of them, few of which anybody
// looks at: their entries are made when somebody asks for them.
//
// A packed one, which an arena made, has eight bytes for each value, and its keys once for all that have the same ones
// in the same order. A referring one is as it stands in the file that was read.
#pragma once

#include "propertylist/Binary.h"
#include "propertylist/Node.h"

namespace propertylist {

struct PackedKeys {
    const PackedText* texts;
    std::uint32_t count;
    std::uint64_t weight;  // of all keys
};

struct LateDictionary {
    mutable std::atomic<const PropertyList::Entry*> entries{nullptr};  // made by the first who asks
};

struct PackedDictionary : LateDictionary {
    explicit PackedDictionary(const PackedKeys* theirKeys) : keys(theirKeys) {}
    const PackedKeys* keys;

    const PackedText* values() const { return reinterpret_cast<const PackedText*>(this + 1); }
};

// Reads a packed dictionary as it is.
class PackedView {
public:
    explicit PackedView(const PropertyList::Node& dictionary)
        : texts_(static_cast<const PropertyListDocument*>(dictionary.owner)->texts),
          packed_(*static_cast<const PackedDictionary*>(dictionary.late)) {}

    const PackedKeys& keys() const { return *packed_.keys; }
    std::uint32_t count() const { return keys().count; }
    std::string_view key(std::uint32_t i) const { return texts_.view(keys().texts[i]); }
    std::string_view value(std::uint32_t i) const { return texts_.view(packed_.values()[i]); }
    // keys().count when it is missing.
    std::uint32_t find(std::string_view key) const;

private:
    const PackedTexts& texts_;
    const PackedDictionary& packed_;
};

struct ReferringDictionary : LateDictionary {
    explicit ReferringDictionary(const char* inFile) : references(inFile) {}
    const char* references;  // to the keys, then to the values
};

// Reads a referring dictionary as it is.
class ReferringView {
public:
    explicit ReferringView(const PropertyList::Node& dictionary)
        : document_(*static_cast<const PropertyListDocument*>(dictionary.owner)),
          references_(static_cast<const ReferringDictionary*>(dictionary.late)->references),
          count_(dictionary.count) {}

    std::uint32_t count() const { return count_; }
    const PropertyList::Node* key(std::uint32_t i) const { return nodeAt(i); }
    const PropertyList::Node* value(std::uint32_t i) const { return nodeAt(std::size_t{count_} + i); }

private:
    const PropertyList::Node* nodeAt(std::size_t i) const {
        const unsigned width = document_.referenceWidth;
        return &document_.nodes[binary::loadNumber(references_ + i * width, width)];
    }

    const PropertyListDocument& document_;
    const char* references_;
    std::uint32_t count_;
};

}  // namespace propertylist
