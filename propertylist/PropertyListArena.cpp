#include "propertylist/PropertyListArena.h"

#include "propertylist/Packed.h"
#include "propertylist/Unicode.h"

#include <cstring>
#include <numeric>

namespace propertylist {
namespace {

using Node = PropertyList::Node;

Node* makeNode(PropertyListDocument& document, PropertyList::Type type) {
    Node* node = new (document.arena.allocate(sizeof(Node))) Node;
    node->owner = &document;
    node->type = type;
    return node;
}

PropertyList holding(const Node* node) {
    PropertyListStorage::retain(node);
    return PropertyListStorage::adopt(node);
}

}  // namespace

PropertyListArena::PropertyListArena(std::shared_ptr<const std::string> text)
    : document_(new PropertyListDocument(std::move(text), 0)),
      holder_(PropertyListStorage::adopt(makeNode(*document_, PropertyList::Type::Nothing))),
      texts_(document_->texts) {}

PropertyListArena::~PropertyListArena() = default;

PropertyListArena::Keys PropertyListArena::keys(std::span<const Text> different) {
    char* place = document_->arena.allocate(sizeof(PackedKeys) + different.size_bytes());
    auto* texts = reinterpret_cast<PackedText*>(place + sizeof(PackedKeys));
    std::uninitialized_copy(different.begin(), different.end(), texts);
    std::uint64_t weight = 0;
    for (const Text text : different) weight += PropertyListStorage::weightOfText(texts_.length(text));
    return new (place) PackedKeys{texts, static_cast<std::uint32_t>(different.size()), weight};
}

PropertyList PropertyListArena::dictionary(Keys keys, std::span<const Text> values) {
    char* place = document_->arena.allocate(sizeof(Node) + sizeof(PackedDictionary) + values.size_bytes());
    auto* packed = new (place + sizeof(Node)) PackedDictionary(keys);
    std::uninitialized_copy(values.begin(), values.end(), const_cast<PackedText*>(packed->values()));
    Node* node = new (place) Node;
    node->owner = document_;
    node->type = PropertyList::Type::Dictionary;
    node->flag = Node::kPacked;
    node->height = values.empty() ? 1 : 2;
    node->count = keys->count;
    node->late = packed;
    node->weight = 1 + keys->weight;
    for (const Text text : values) node->weight += PropertyListStorage::weightOfText(texts_.length(text));
    return holding(node);
}

PropertyList PropertyListArena::string(Text text) {
    Node* node = makeNode(*document_, PropertyList::Type::String);
    const std::string_view bytes = view(text);
    node->bytes = bytes.data();
    node->length = bytes.size();
    node->flag = isASCII(bytes) ? Node::kASCII : 0;
    node->count = hashText(bytes);
    return holding(node);
}

std::optional<std::string_view> PropertyListArena::textIn(const PropertyList& dictionary, std::string_view key) {
    if (!dictionary.isDictionary()) return std::nullopt;
    if (!dictionary.node()->isPacked()) {
        const PropertyList& found = dictionary[key];
        return found ? std::optional(found.stringValue()) : std::nullopt;
    }
    const PackedView view(*dictionary.node());
    const std::uint32_t at = view.find(key);
    return at < view.count() ? std::optional(view.value(at)) : std::nullopt;
}

}  // namespace propertylist
