// Hashing for the property-list value and its codecs: a table from hashes to numbers that leaves the comparison of the
// things behind the numbers to its user.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace propertylist {

// Seeded afresh in every process, and alike in all its libraries, so that a hostile file cannot hold keys that collide.
std::uint32_t hashText(std::string_view text) noexcept;
// For the contents of files, by 64 bytes at a time: equal ones are taken for the same.
std::uint64_t hashContents(std::string_view bytes) noexcept;
std::uint32_t hashNumber(std::uint64_t bits) noexcept;

class HashTable {
public:
    static constexpr std::uint32_t kMissing = 0xFFFFFFFF;

    explicit HashTable(std::size_t expected = 0) { clear(expected); }

    void clear(std::size_t expected) {
        slots_.assign(std::bit_ceil(expected + expected / 2 + 8), Slot{});
        count_ = 0;
    }

    // The first number with this hash that `same` accepts.
    template <typename Same>
    std::uint32_t find(std::uint32_t hash, Same same) const {
        for (std::size_t at = hash & mask();; at = (at + 1) & mask()) {
            const Slot& slot = slots_[at];
            if (slot.numberPlus1 == 0) return kMissing;
            if (slot.hash == hash && same(slot.numberPlus1 - 1)) return slot.numberPlus1 - 1;
        }
    }

    void add(std::uint32_t hash, std::uint32_t number) {
        if (++count_ * 4 > slots_.size() * 3) grow();
        place({hash, number + 1});
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t numberPlus1 = 0;  // 0 in an empty slot
    };

    std::size_t mask() const { return slots_.size() - 1; }
    void place(Slot slot) {
        std::size_t at = slot.hash & mask();
        while (slots_[at].numberPlus1 != 0) at = (at + 1) & mask();
        slots_[at] = slot;
    }
    void grow() {
        constexpr std::size_t kSmall = 1 << 16;
        std::vector<Slot> old(slots_.size() * (slots_.size() < kSmall ? 4 : 2));
        old.swap(slots_);
        for (const Slot& slot : old)
            if (slot.numberPlus1 != 0) place(slot);
    }

    std::vector<Slot> slots_;  // a power of two of them
    std::size_t count_ = 0;
};

}  // namespace propertylist
