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

std::uint32_t finish(std::uint64_t a, std::uint64_t b, std::uint64_t state) {
    std::uint64_t hash = mix(mix(a ^ kOdd1, b ^ state), kOdd2 ^ state);
    return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

}  // namespace

std::uint32_t hashText(std::string_view text) noexcept {
    const char* p = text.data();
    std::size_t left = text.size();
    std::uint64_t state = seed() ^ mix(left ^ kOdd2, kOdd1), a = 0, b = 0;
    for (; left > 16; left -= 16, p += 16)
        state = mix(load<std::uint64_t>(p) ^ kOdd1, load<std::uint64_t>(p + 8) ^ state);
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

std::uint32_t hashNumber(std::uint64_t bits) noexcept { return finish(bits, 0, seed()); }

}  // namespace propertylist
