#include "propertylist/Packed.h"

#include "propertylist/Unicode.h"

namespace propertylist {
namespace {

using Node = PropertyList::Node;
using Entry = PropertyList::Entry;
using Index = PropertyListStorage::Index;

// The document's list of these blocks links them by their first word; look-ups find the index just before the entries.
constexpr std::size_t kHead = sizeof(void*) + sizeof(Index);

Node* makeString(void* place, StorageOwner* owner, std::string_view text) {
    Node* node = new (place) Node;
    node->owner = owner;
    node->type = PropertyList::Type::String;
    node->flag = isASCII(text) ? Node::kASCII : 0;
    node->count = hashText(text);
    node->bytes = text.data();
    node->length = text.size();
    return node;
}

// The references within a document are not counted, and nobody ever destroys these.
void makeEntry(Entry* place, const Node* key, const Node* value) {
    new (place) Entry{PropertyListStorage::adopt(key), PropertyListStorage::adopt(value)};
}

void makePackedEntries(Entry* entries, const Node& dictionary) {
    const PackedView view(dictionary);
    auto* nodes = reinterpret_cast<Node*>(entries + view.count());
    for (std::uint32_t i = 0; i < view.count(); ++i, nodes += 2) {
        const Node* key = makeString(nodes, dictionary.owner, view.key(i));
        makeEntry(entries + i, key, makeString(nodes + 1, dictionary.owner, view.value(i)));
    }
}

void makeReferringEntries(Entry* entries, const Node& dictionary) {
    const ReferringView view(dictionary);
    for (std::uint32_t i = 0; i < view.count(); ++i) makeEntry(entries + i, view.key(i), view.value(i));
}

}  // namespace

const Entry* PropertyListStorage::lateEntries(const Node& dictionary) {
    if (const Entry* made = dictionary.late->entries.load(std::memory_order_acquire)) return made;
    const bool isPacked = dictionary.isPacked();
    const std::size_t each = sizeof(Entry) + (isPacked ? 2 * sizeof(Node) : 0);
    auto* block = static_cast<char*>(std::malloc(kHead + dictionary.count * each));
    if (!block) throw std::bad_alloc();
    new (block + sizeof(void*)) Index(nullptr);
    auto* made = reinterpret_cast<Entry*>(block + kHead);
    isPacked ? makePackedEntries(made, dictionary) : makeReferringEntries(made, dictionary);
    const Entry* first = nullptr;
    if (dictionary.late->entries.compare_exchange_strong(first, made, std::memory_order_acq_rel,
                                                         std::memory_order_acquire)) {
        static_cast<PropertyListDocument*>(dictionary.owner)->keepBlock(block);
        return made;
    }
    std::free(block);
    return first;
}

std::uint32_t PackedView::find(std::string_view key) const {
    std::uint32_t at = 0;
    while (at < count() && this->key(at) != key) ++at;
    return at;
}

}  // namespace propertylist
