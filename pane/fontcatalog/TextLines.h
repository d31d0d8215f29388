// Lines of text as the font list and the name database have them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace fontcatalog {

// What Unicode counts as white space: tab to carriage return, space, no-break space, the typographic spaces, the line
// and paragraph separators.
bool isWhiteSpace(std::uint32_t codePoint);
std::string_view trimmedWithCare(std::string_view validUtf8);

inline bool isSurelyNoWhiteSpace(char c) { return static_cast<signed char>(c) > ' '; }

// Without white space at both ends.
inline std::string_view trimmed(std::string_view validUtf8) {
    if (!validUtf8.empty() && isSurelyNoWhiteSpace(validUtf8.front()) && isSurelyNoWhiteSpace(validUtf8.back()))
        return validUtf8;
    return trimmedWithCare(validUtf8);
}

// The first "\r" or "\n" from `at`, or `end`.
inline const char* lineEnd(const char* at, const char* end) {
    const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
    // Lines are short, and for two million of them the call of a library function is worth saving. The highest bit of
    // a byte of `low` tells that the text's byte is below 14; above the first such byte it may err.
    if constexpr (std::endian::native == std::endian::little) {
        constexpr std::uint64_t kEach = 0x0101010101010101;
        for (std::uint64_t word; end - at >= 8; at += 8) {
            std::memcpy(&word, at, sizeof word);
            std::uint64_t low = (word - kEach * 14) & ~word & kEach * 0x80;
            for (; low != 0; low &= low - 1)
                if (const char* found = at + std::countr_zero(low) / 8; isLineEnd(*found)) return found;
        }
    }
    while (at != end && !isLineEnd(*at)) ++at;
    return at;
}

// Lines end at any run of "\r" and "\n"; they come trimmed at both ends, and those with nothing left are passed over.
class TextLines {
public:
    explicit TextLines(std::string_view validUtf8) : at_(validUtf8.data()), end_(at_ + validUtf8.size()) {}

    bool next(std::string_view& line) {
        while (at_ != end_) {
            const char* last = lineEnd(at_, end_);
            line = trimmed({at_, static_cast<std::size_t>(last - at_)});
            at_ = last == end_ ? end_ : last + 1;
            if (!line.empty()) return true;
        }
        return false;
    }

private:
    const char *at_, *end_;
};

}  // namespace fontcatalog
