// The keys and values of the record at hand, in the order in which the keys came first.
#pragma once

#include "pane/fontcatalog/KeySequences.h"

#include <optional>

namespace fontcatalog {

// Any keys at all, each with its place: for records whose keys no others share. A record of a million lines takes no
// longer for each than one of twenty, and little more memory than the text.
class LooseFields {
public:
    using Arena = propertylist::PropertyListArena;
    explicit LooseFields(const Arena& arena) : arena_(arena) {}

    void assign(std::vector<Arena::Text> keys, std::vector<Arena::Text> values);
    // Asks for the key's text only when the key is a new one.
    template <typename MakeText>
    void set(std::string_view key, Arena::Text value, MakeText makeText) {
        std::uint32_t& slot = slotOf(key);
        if (slot != 0) {
            values[slot - 1] = value;
            return;
        }
        keys.push_back(makeText());
        values.push_back(value);
        slot = static_cast<std::uint32_t>(keys.size());
        if (keys.size() * 4 > slots_.size() * 3) grow();
    }
    std::uint32_t placeOf(std::string_view key) { return slotOf(key) - 1; }
    void dropIndex() { slots_ = {}; }

    std::vector<Arena::Text> keys, values;

private:
    std::uint32_t& slotOf(std::string_view key);
    void grow();

    const Arena& arena_;
    std::vector<std::uint32_t> slots_;  // a power of two of them, each 0 or a place + 1
};

class RecordFields {
public:
    using Arena = propertylist::PropertyListArena;
    explicit RecordFields(Arena& arena) : arena_(arena), sequences_(arena), loose_(arena) {}

    void clear();

    // The key of the line that most likely comes next, with the colon behind it in memory; a line end when nobody
    // knows.
    std::string_view likelyKey() const { return likely_->key; }
    void setLikely(Arena::Text value) { take(*likely_, value, KeySequences::kReading); }

    // The text of the key is asked for only where it is kept.
    template <typename MakeText>
    void set(std::string_view key, Arena::Text value, MakeText makeText,
             KeySequences::Phase phase = KeySequences::kReading) {
        if (!isLoose_)
            if (const KeySequences::Step* step = sequences_.step(sequence_, key, phase))
                return take(*step, value, phase);
        loosen();
        loose_.set(key, value, makeText);
    }
    // A key that is derived from others, behind the lines of the record.
    void derive(std::string_view key, Arena::Text value) {
        set(
            key, value, [&] { return arena_.copy(key); }, KeySequences::kDeriving);
    }
    std::optional<Arena::Text> value(KnownKey key);

    propertylist::PropertyList dictionary();

private:
    void take(const KeySequences::Step& step, Arena::Text value, KeySequences::Phase phase) {
        values_[step.place] = value;
        sequence_ = step.to;
        likely_ = &sequences_.likely(sequence_, phase);
    }
    void loosen();
    std::span<const Arena::Text> values() const { return {values_.data(), sequences_.size(sequence_)}; }

    Arena& arena_;
    KeySequences sequences_;
    std::uint32_t sequence_ = 0;
    const KeySequences::Step* likely_ = &sequences_.likely(0, KeySequences::kReading);
    std::vector<Arena::Text> values_{KeySequences::kMost};  // as many as the sequence has keys
    bool isLoose_ = false;
    LooseFields loose_;
};

}  // namespace fontcatalog
