#include "platform/PropertyListArena.h"

#include "platform/PropertyListNode.h"
#include "platform/Unicode.h"

#include <cstring>

namespace platform {
namespace {

using Node = PropertyList::Node;
using Entry = PropertyList::Entry;

Node* makeNode(PropertyListDocument& document, PropertyList::Type type) {
    Node* node = new (document.arena.allocate(sizeof(Node))) Node;
    node->owner = &document;
    node->type = type;
    return node;
}

}  // namespace

PropertyListArena::PropertyListArena()
    : document_(new PropertyListDocument(nullptr, 0)),
      holder_(PropertyListStorage::adopt(makeNode(*document_, PropertyList::Type::Nothing))) {}

PropertyListArena::~PropertyListArena() = default;

PropertyListArena::String PropertyListArena::string(std::string_view text) {
    const std::uint32_t hash = hashText(text);
    String& recent = recent_[hash % recent_.size()];
    if (recent && recent->count == hash && recent->text() == text) return recent;
    Node* node = makeNode(*document_, PropertyList::Type::String);
    char* copy = document_->arena.allocate(text.size());
    if (!text.empty()) std::memcpy(copy, text.data(), text.size());
    node->bytes = copy;
    node->length = text.size();
    node->flag = isASCII(text) ? Node::kASCII : 0;
    node->count = hash;
    return recent = node;
}

PropertyList PropertyListArena::dictionary(std::span<const Field> fields) {
    Node* node = makeNode(*document_, PropertyList::Type::Dictionary);
    char* place = document_->arena.allocate(sizeof(PropertyListStorage::Index) + fields.size() * sizeof(Entry));
    new (place) PropertyListStorage::Index(nullptr);
    auto* entries = reinterpret_cast<Entry*>(place + sizeof(PropertyListStorage::Index));
    node->entries = entries;
    node->count = static_cast<std::uint32_t>(fields.size());
    // The entries are never destroyed, and so count as no holders of the document: it would hold itself.
    PropertyListStorage::beginMeasure(*node);
    for (const Field& field : fields) {
        new (entries++) Entry{PropertyListStorage::adopt(field.key), PropertyListStorage::adopt(field.value)};
        PropertyListStorage::measureChild(*node, *field.key);
        PropertyListStorage::measureChild(*node, *field.value);
    }
    return value(node);
}

PropertyList PropertyListArena::value(String string) {
    PropertyListStorage::retain(string);
    return PropertyListStorage::adopt(string);
}

std::string_view PropertyListArena::textOf(String string) { return string->text(); }

}  // namespace platform
