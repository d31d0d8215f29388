#include "propertylist/PropertyListArena.h"

#include "propertylist/Node.h"

#include <cstring>
#include <functional>

namespace propertylist {
namespace {

using Node = PropertyList::Node;

Node* makeNode(PropertyListDocument& document, PropertyList::Type type, std::size_t size) {
    Node* node = new (document.arena.allocate(sizeof(Node))) Node;
    node->owner = &document;
    node->type = type;
    node->size = static_cast<std::uint32_t>(size);
    return node;
}

PropertyList holding(const Node* node) {
    PropertyListStorage::retain(node);
    return PropertyListStorage::adopt(node);
}

bool isPartOf(const std::string* text, std::string_view part) {
    const std::less_equal<const char*> isNotAfter;
    return text && isNotAfter(text->data(), part.data()) &&
           isNotAfter(part.data() + part.size(), text->data() + text->size());
}

// Where a text is remembered. It need not tell texts apart, so their ends are enough: those of a list's differ there.
std::uint32_t mark(std::string_view text) {
    std::uint64_t first = 0, last = 0;
    if (text.size() >= sizeof first) {
        std::memcpy(&first, text.data(), sizeof first);
        std::memcpy(&last, text.data() + text.size() - sizeof last, sizeof last);
    } else {
        for (const char c : text) first = first << 8 | static_cast<unsigned char>(c);
    }
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
    return static_cast<std::uint32_t>(((first * kOdd ^ last) * kOdd + text.size() * kOdd) >> 32);
}

const char* copied(Arena& arena, std::string_view text) {
    char* place = arena.allocate(text.size());
    if (!text.empty()) std::memcpy(place, text.data(), text.size());
    return place;
}

}  // namespace

std::string_view PropertyListArena::String::text() const { return node_->text(); }

PropertyListArena::PropertyListArena(std::shared_ptr<const std::string> text)
    : document_(new PropertyListDocument(std::move(text))),
      holder_(PropertyListStorage::adopt(makeNode(*document_, PropertyList::Type::Nothing, 0))) {}

PropertyListArena::~PropertyListArena() = default;

PropertyListArena::String PropertyListArena::string(std::string_view validUTF8) {
    const std::uint32_t marked = mark(validUTF8);
    Recent& recent = recent_[marked % kRecent];
    if (recent.node && recent.mark == marked && recent.node->text() == validUTF8) return String(recent.node);
    Node* node = makeNode(*document_, PropertyList::Type::String, validUTF8.size());
    const bool isPart = isPartOf(document_->text.get(), validUTF8);
    node->bytes = isPart ? validUTF8.data() : copied(document_->arena, validUTF8);
    recent = {marked, node};
    return String(node);
}

PropertyList PropertyListArena::dictionary(std::span<const Field> fields) {
    Node* node = makeNode(*document_, PropertyList::Type::Dictionary, fields.size());
    PropertyList* place = document_->allocateChildren(2 * fields.size());
    node->elements = place;
    std::uint64_t weight = 1;
    for (const Field& field : fields) {
        new (place++) PropertyList(PropertyListStorage::adopt(field.key.node_));
        new (place++) PropertyList(PropertyListStorage::adopt(field.value.node_));
        weight += PropertyListStorage::weight(*field.key.node_) + PropertyListStorage::weight(*field.value.node_);
    }
    if (!fields.empty()) node->height = 2;
    node->head().weight = weight;
    return holding(node);
}

PropertyList PropertyListArena::value(String string) const { return holding(string.node_); }

}  // namespace propertylist
