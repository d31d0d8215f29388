// Lines of text as the font list and the name database have them: they end at any run of "\r" and "\n".
#pragma once

#include "propertylist/Unicode.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace fontcatalog {

// The first "\r" or "\n", or the end.
inline const char* lineEnd(std::string_view text) {
    const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
    const char *at = text.data(), *end = at + text.size();
    // Eight bytes at a time, for there are two million lines. The highest bit of a byte of `low` tells that the text's
    // byte is below 14; above the first such byte it may err.
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

// The first line, without its end, which are both taken off the front. Empty between two line ends.
inline std::string_view takeLine(std::string_view& text) {
    const auto length = static_cast<std::size_t>(lineEnd(text) - text.data());
    const std::string_view line = text.substr(0, length);
    text.remove_prefix(length == text.size() ? length : length + 1);
    return line;
}

// Without white space at both ends. Most lines have none, which two comparisons tell.
inline std::string_view trimmedLine(std::string_view validUTF8) {
    const auto isNone = [](char c) { return static_cast<signed char>(c) > ' '; };
    if (!validUTF8.empty() && isNone(validUTF8.front()) && isNone(validUTF8.back())) return validUTF8;
    return propertylist::trimmed(validUTF8);
}

}  // namespace fontcatalog
