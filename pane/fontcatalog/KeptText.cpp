#include "pane/fontcatalog/KeptText.h"

#include "propertylist/PropertyListArena.h"

#include <span>
#include <vector>

namespace fontcatalog {
namespace {

using platform::PropertyList;
using propertylist::PropertyListArena;

// Bytes, about, that a file, a record and a field of one take beside their text.
constexpr std::size_t kFile = 2048, kRecord = 96, kField = 40;

std::size_t neededFor(std::span<const PropertyList::Entry> names) {
    std::size_t bytes = 0;
    const char* last = nullptr;  // lists give all their records one path
    for (const PropertyList::Entry& name : names) {
        bytes += kRecord + name.key.stringValue().size();
        for (const PropertyList::Entry& field : name.value.entries()) {
            const std::string_view text = field.value.stringValue();
            bytes += kField + (text.size() > kField && text.data() == last ? 0 : text.size());
            if (text.size() > kField) last = text.data();
        }
    }
    return bytes;
}

NamesCollection copied(std::span<const PropertyList::Entry> names) {
    NamesCollection copy;
    PropertyListArena arena;
    std::vector<PropertyListArena::Field> fields;
    for (const PropertyList::Entry& name : names) {
        fields.clear();
        for (const PropertyList::Entry& field : name.value.entries())
            fields.push_back({arena.string(field.key.stringValue()), arena.string(field.value.stringValue())});
        copy.exchange(arena.value(arena.string(name.key.stringValue())), arena.dictionary(fields));
    }
    return copy;
}

}  // namespace

void KeptText::add(std::size_t bytes, NamesCollection& names) {
    held_ += kFile + bytes;
    if (held_ < next_) return;
    if (const std::size_t needed = neededFor(names.entries()); needed <= held_ / 2) {
        names = copied(names.entries());
        held_ = needed;
    }
    next_ = 2 * held_ + kWorthwhile;
}

}  // namespace fontcatalog
