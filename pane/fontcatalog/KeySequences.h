// The sequences of keys that the records of a font list begin with, as a tree: the records of a list have few of them,
// so a record is the sequence where its keys end and a value for each of them.
#pragma once

#include "propertylist/Hash.h"
#include "propertylist/PropertyListArena.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace fontcatalog {

// The keys that have a meaning here.
enum KnownKey : std::uint8_t { kFontName, kFullName, kFamilyName, kOutlineFileName };
inline constexpr std::string_view kKnownKeys[] = {"FontName", "FullName", "FamilyName", "OutlineFileName"};

class KeySequences {
public:
    using Arena = propertylist::PropertyListArena;
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    // A list with more steps, or longer keys, is none of Adobe's, and its other records do without.
    static constexpr std::size_t kMost = 1024, kLongestKey = 255;

    // From a sequence to the one that is longer by a key, or to itself when it has the key already.
    struct Step {
        std::string_view key;   // behind it stands a colon
        Arena::Text text = {};  // the key
        std::uint32_t from = 0, to = 0;
        std::uint32_t place = 0;  // of the key in the sequence
    };
    // Which step is remembered as the likely next one: records go on in the same way, and so do those that end here and
    // get the keys that are derived.
    enum Phase : std::uint8_t { kReading, kDeriving };

    explicit KeySequences(Arena& arena);
    KeySequences(const KeySequences&) = delete;

    // The step that was taken from there the last time; its key is not to be found in any text when there was none.
    const Step& likely(std::uint32_t sequence, Phase phase) const { return steps_[sequences_[sequence].likely[phase]]; }
    const Step& nowhere() const { return steps_[0]; }
    // Null when it would be a new one, and one too many.
    const Step* step(std::uint32_t sequence, std::string_view key, Phase phase);
    // Where a sequence has one of the known keys; kNone when it has not.
    std::uint32_t placeOf(std::uint32_t sequence, KnownKey key) const { return sequences_[sequence].known[key]; }

    std::uint32_t size(std::uint32_t sequence) const { return sequences_[sequence].size; }
    Arena::Keys keys(std::uint32_t sequence);
    std::vector<Arena::Text> texts(std::uint32_t sequence) const;

private:
    struct Sequence {
        std::uint32_t last = 0;  // the step that led here
        std::uint32_t size = 0;
        std::uint32_t likely[2] = {0, 0};
        std::array<std::uint32_t, std::size(kKnownKeys)> known = {kNone, kNone, kNone, kNone};
        Arena::Keys keys = nullptr;  // made when the first record ends here
    };

    std::uint32_t add(std::uint32_t from, std::string_view key);
    std::uint32_t placeIn(std::uint32_t sequence, std::string_view key) const;

    Arena& arena_;
    std::vector<Sequence> sequences_{1};  // the empty one first
    std::vector<Step> steps_{1};          // the first leads nowhere; they stay where they are
    propertylist::HashTable table_;
};

}  // namespace fontcatalog
