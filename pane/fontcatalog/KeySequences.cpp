#include "pane/fontcatalog/KeySequences.h"

#include <algorithm>
#include <string>

namespace fontcatalog {
namespace {

// No line holds a line end.
constexpr std::string_view kNoKey = "\n";

std::uint32_t hashOf(std::uint32_t sequence, std::string_view key) {
    return propertylist::hashText(key) + propertylist::hashNumber(sequence);
}

}  // namespace

KeySequences::KeySequences(Arena& arena) : arena_(arena) {
    steps_.reserve(kMost);
    steps_[0].key = kNoKey;
}

const KeySequences::Step* KeySequences::step(std::uint32_t sequence, std::string_view key, Phase phase) {
    std::uint32_t& likely = sequences_[sequence].likely[phase];
    if (likely != 0 && steps_[likely].key == key) return &steps_[likely];
    const auto same = [&](std::uint32_t step) { return steps_[step].from == sequence && steps_[step].key == key; };
    std::uint32_t found = table_.find(hashOf(sequence, key), same);
    if (found == propertylist::HashTable::kMissing) {
        if (steps_.size() == kMost || key.size() > kLongestKey) return nullptr;
        found = add(sequence, key);
    }
    sequences_[sequence].likely[phase] = found;
    return &steps_[found];
}

std::uint32_t KeySequences::add(std::uint32_t from, std::string_view key) {
    const auto added = static_cast<std::uint32_t>(steps_.size());
    Step step;
    std::string line(key);
    step.text = arena_.copy(line += ':');
    step.key = arena_.view(step.text).substr(0, key.size());
    --step.text.length;
    step.from = from;
    step.place = placeIn(from, key);
    step.to = from;
    if (step.place == kNone) {
        step.to = static_cast<std::uint32_t>(sequences_.size());
        step.place = sequences_[from].size;
        Sequence next = sequences_[from];
        next = {added, step.place + 1, {0, 0}, next.known, nullptr};
        const auto known = std::find(std::begin(kKnownKeys), std::end(kKnownKeys), key) - std::begin(kKnownKeys);
        if (known < std::ssize(kKnownKeys)) next.known[static_cast<std::size_t>(known)] = step.place;
        sequences_.push_back(next);
    }
    steps_.push_back(step);
    table_.add(hashOf(from, key), added);
    return added;
}

std::uint32_t KeySequences::placeIn(std::uint32_t sequence, std::string_view key) const {
    for (; sequence != 0; sequence = steps_[sequences_[sequence].last].from)
        if (const Step& last = steps_[sequences_[sequence].last]; last.key == key) return last.place;
    return kNone;
}

KeySequences::Arena::Keys KeySequences::keys(std::uint32_t sequence) {
    Arena::Keys& made = sequences_[sequence].keys;
    if (!made) made = arena_.keys(texts(sequence));
    return made;
}

std::vector<KeySequences::Arena::Text> KeySequences::texts(std::uint32_t sequence) const {
    std::vector<Arena::Text> texts(sequences_[sequence].size);
    for (std::size_t place = texts.size(); place-- > 0; sequence = steps_[sequences_[sequence].last].from)
        texts[place] = steps_[sequences_[sequence].last].text;
    return texts;
}

}  // namespace fontcatalog
