#include "propertylist/Unicode.h"

#include <cstring>

namespace propertylist {
namespace {

using Byte = unsigned char;

bool isContinuation(char c) { return (static_cast<Byte>(c) & 0xC0) == 0x80; }

// The length of the sequence that starts here, 0 when it is not a valid one.
std::size_t sequenceLength(const char* p, std::size_t left) {
    auto first = static_cast<Byte>(p[0]);
    if (first < 0x80) return 1;
    std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || left < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (!isContinuation(p[i])) return 0;
    auto second = static_cast<Byte>(p[1]);
    bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    bool outside = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
    return overlong || outside ? 0 : length;
}

// How many bytes at the front are ASCII, counted in whole words.
std::size_t asciiPrefix(std::string_view text) {
    std::size_t i = 0;
    for (std::uint64_t word; i + 8 <= text.size(); i += 8) {
        std::memcpy(&word, text.data() + i, 8);
        if (word & 0x8080808080808080U) break;
    }
    return i;
}

char* put(char* out, std::uint32_t c) {
    if (c < 0x80) {
        *out++ = static_cast<char>(c);
        return out;
    }
    if (c < 0x800) {
        *out++ = static_cast<char>(0xC0 | (c >> 6));
    } else if (c < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (c >> 12));
        *out++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    } else {
        *out++ = static_cast<char>(0xF0 | (c >> 18));
        *out++ = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        *out++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    }
    *out++ = static_cast<char>(0x80 | (c & 0x3F));
    return out;
}

std::uint32_t unitAt(std::string_view utf16, std::size_t at, ByteOrder order) {
    auto a = static_cast<Byte>(utf16[at]), b = static_cast<Byte>(utf16[at + 1]);
    return order == ByteOrder::BigEndian ? static_cast<std::uint32_t>(a << 8 | b)
                                         : static_cast<std::uint32_t>(b << 8 | a);
}

char* putUnit(char* out, std::uint32_t unit) {
    *out++ = static_cast<char>(unit >> 8);
    *out++ = static_cast<char>(unit & 0xFF);
    return out;
}

}  // namespace

bool isASCII(std::string_view text) noexcept {
    for (std::size_t i = asciiPrefix(text); i < text.size(); ++i)
        if (static_cast<Byte>(text[i]) >= 0x80) return false;
    return true;
}

bool isValidUTF8(std::string_view text) noexcept {
    for (std::size_t i = asciiPrefix(text); i < text.size();) {
        std::size_t length = sequenceLength(text.data() + i, text.size() - i);
        if (length == 0) return false;
        i += length;
        if (length > 1) i += asciiPrefix(text.substr(i));
    }
    return true;
}

void appendUTF8(std::string& text, std::uint32_t codePoint) {
    char bytes[4];
    text.append(bytes, put(bytes, codePoint));
}

std::uint32_t takeCodePoint(std::string_view& text) noexcept {
    auto first = static_cast<Byte>(text[0]);
    std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    std::uint32_t c = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) c = c << 6 | (static_cast<Byte>(text[i]) & 0x3FU);
    text.remove_prefix(length);
    return c;
}

std::optional<std::size_t> writeUTF8(std::string_view utf16, ByteOrder order, char* out) noexcept {
    if (utf16.size() % 2) return std::nullopt;
    char* end = out;
    for (std::size_t i = 0; i < utf16.size(); i += 2) {
        std::uint32_t unit = unitAt(utf16, i, order);
        if (unit >= 0xD800 && unit < 0xE000) {
            std::uint32_t low = i + 2 < utf16.size() ? unitAt(utf16, i + 2, order) : 0;
            if (unit >= 0xDC00 || low < 0xDC00 || low >= 0xE000) return std::nullopt;
            unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
            i += 2;
        }
        end = put(end, unit);
    }
    return static_cast<std::size_t>(end - out);
}

std::optional<std::string> utf8FromUTF16(std::string_view utf16, ByteOrder order) {
    std::string text(utf16.size() / 2 * 3, '\0');
    auto length = writeUTF8(utf16, order, text.data());
    if (!length) return std::nullopt;
    text.resize(*length);
    return text;
}

std::size_t utf16Units(std::string_view validUTF8) noexcept {
    std::size_t units = 0;
    for (char c : validUTF8) units += (isContinuation(c) ? 0 : 1) + (static_cast<Byte>(c) >= 0xF0 ? 1 : 0);
    return units;
}

char* writeUTF16BigEndian(std::string_view validUTF8, char* out) noexcept {
    while (!validUTF8.empty()) {
        std::uint32_t c = takeCodePoint(validUTF8);
        if (c >= 0x10000) {
            out = putUnit(out, 0xD800 + ((c - 0x10000) >> 10));
            c = 0xDC00 + ((c - 0x10000) & 0x3FF);
        }
        out = putUnit(out, c);
    }
    return out;
}

}  // namespace propertylist
