#include "propertylist/Hash.h"

#include <cstdlib>
#include <cstring>

namespace propertylist {
namespace {

std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
    __extension__ using Wide = unsigned __int128;
    Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

template <typename Word>
std::uint64_t load(const char* p) {
    Word word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

constexpr std::uint64_t kOdd1 = 0xA0761D6478BD642FU, kOdd2 = 0xE7037ED1A0B428DBU;

// A host and a bundle hold a copy of this code each and hand values to each other, so the seed comes from what the
// whole process shares and no file can know: where the system has put the C library this time.
std::uint64_t seed() noexcept {
    static const std::uint64_t value = mix(reinterpret_cast<std::uintptr_t>(&std::abort) ^ kOdd1, kOdd2);
    return value;
}

std::uint64_t finish(std::uint64_t a, std::uint64_t b, std::uint64_t state) {
    return mix(mix(a ^ kOdd1, b ^ state), kOdd2 ^ state);
}

std::uint32_t folded(std::uint64_t hash) { return static_cast<std::uint32_t>(hash ^ (hash >> 32)); }

std::uint64_t absorb(const char* p, std::uint64_t state) {
    return mix(load<std::uint64_t>(p) ^ kOdd1, load<std::uint64_t>(p + 8) ^ state);
}

std::uint64_t start(std::size_t size) { return seed() ^ mix(size ^ kOdd2, kOdd1); }

std::uint64_t hashRest(const char* p, std::size_t left, std::uint64_t state) {
    std::uint64_t a = 0, b = 0;
    for (; left > 16; left -= 16, p += 16) state = absorb(p, state);
    if (left >= 8) {
        a = load<std::uint64_t>(p), b = load<std::uint64_t>(p + left - 8);
    } else if (left >= 4) {
        a = load<std::uint32_t>(p), b = load<std::uint32_t>(p + left - 4);
    } else if (left > 0) {
        auto at = [p](std::size_t i) { return static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])); };
        a = at(0) << 16 | at(left / 2) << 8 | at(left - 1);
    }
    return finish(a, b, state);
}

}  // namespace

std::uint32_t hashText(std::string_view text) noexcept {
    return folded(hashRest(text.data(), text.size(), start(text.size())));
}

// Four lanes, because a multiplication takes several times as long as it takes to begin the next.
std::uint64_t hashContents(std::string_view bytes) noexcept {
    constexpr std::size_t kLane = 16, kRound = 4 * kLane;
    const char* p = bytes.data();
    std::size_t left = bytes.size();
    std::uint64_t a = start(left), b = a ^ kOdd1, c = a ^ kOdd2, d = ~a;
    for (; left > kRound; left -= kRound, p += kRound) {
        a = absorb(p, a);
        b = absorb(p + kLane, b);
        c = absorb(p + 2 * kLane, c);
        d = absorb(p + 3 * kLane, d);
    }
    return hashRest(p, left, finish(a, b, finish(c, d, start(bytes.size()))));
}

std::uint32_t hashNumber(std::uint64_t bits) noexcept { return folded(finish(bits, 0, seed())); }

}  // namespace propertylist
