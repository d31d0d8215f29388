#include "pane/fontcatalog/RecordFields.h"

#include <bit>
#include <utility>

namespace fontcatalog {

void LooseFields::assign(std::vector<Arena::Text> newKeys, std::vector<Arena::Text> newValues) {
    keys = std::move(newKeys);
    values = std::move(newValues);
    slots_.clear();
    grow();
}

std::uint32_t& LooseFields::slotOf(std::string_view key) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = propertylist::hashText(key) & mask;
    while (slots_[at] != 0 && arena_.view(keys[slots_[at] - 1]) != key) at = (at + 1) & mask;
    return slots_[at];
}

void LooseFields::grow() {
    slots_ = {};
    slots_.resize(std::bit_ceil(keys.size() * 2 + 16));
    for (std::uint32_t place = 0; place < keys.size(); ++place) slotOf(arena_.view(keys[place])) = place + 1;
}

void RecordFields::clear() {
    sequence_ = 0;
    likely_ = &sequences_.likely(0, KeySequences::kReading);
    if (!std::exchange(isLoose_, false)) return;
    loose_.assign({}, {});
}

// The sequences are full: the rest of the record goes on without them.
void RecordFields::loosen() {
    if (std::exchange(isLoose_, true)) return;
    loose_.assign(sequences_.texts(sequence_), {values().begin(), values().end()});
    likely_ = &sequences_.nowhere();
}

std::optional<RecordFields::Arena::Text> RecordFields::value(KnownKey key) {
    const std::uint32_t place = isLoose_ ? loose_.placeOf(kKnownKeys[key]) : sequences_.placeOf(sequence_, key);
    if (place == KeySequences::kNone) return std::nullopt;
    return isLoose_ ? loose_.values[place] : values_[place];
}

propertylist::PropertyList RecordFields::dictionary() {
    if (!isLoose_) return arena_.dictionary(sequences_.keys(sequence_), values());
    loose_.dropIndex();
    return arena_.dictionary(arena_.keys(loose_.keys), loose_.values);
}

}  // namespace fontcatalog
