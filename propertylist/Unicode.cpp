#include "propertylist/Unicode.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace propertylist {
namespace {

using Byte = unsigned char;

constexpr std::uint32_t kReplacement = 0xFFFD;

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
    constexpr std::uint64_t kOther = 0x8080808080808080;
    std::size_t i = 0;
    for (std::uint64_t words[4]; i + sizeof words <= text.size(); i += sizeof words) {
        std::memcpy(words, text.data() + i, sizeof words);
        if ((words[0] | words[1] | words[2] | words[3]) & kOther) break;
    }
    for (std::uint64_t word; i + sizeof word <= text.size(); i += sizeof word) {
        std::memcpy(&word, text.data() + i, sizeof word);
        if (word & kOther) break;
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

// The next code point, U+FFFD where there is none; `at` is moved behind it.
std::uint32_t codePointAt(std::string_view utf16, ByteOrder order, std::size_t& at, bool& isWellFormed) {
    if (utf16.size() - at < 2) {
        at = utf16.size();
        isWellFormed = false;
        return kReplacement;
    }
    const std::uint32_t unit = unitAt(utf16, at, order);
    at += 2;
    if (isUnicodeScalar(unit)) return unit;
    const std::uint32_t low = utf16.size() - at < 2 ? 0 : unitAt(utf16, at, order);
    if (unit >= 0xDC00 || low < 0xDC00 || low >= 0xE000) {
        isWellFormed = false;
        return kReplacement;
    }
    at += 2;
    return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
}

// The length of the white space at the front, or at the back, of a text that is not empty; 0 when there is none.
std::size_t whiteSpaceAtFront(std::string_view text) {
    std::string_view rest = text;
    return isWhiteSpace(takeCodePoint(rest)) ? text.size() - rest.size() : 0;
}
std::size_t whiteSpaceAtBack(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && isContinuation(text[text.size() - length])) ++length;
    return whiteSpaceAtFront(text.substr(text.size() - length));
}

char* putUnit(char* out, std::uint32_t unit) {
    *out++ = static_cast<char>(unit >> 8);
    *out++ = static_cast<char>(unit & 0xFF);
    return out;
}

}  // namespace

bool isASCII(std::string_view text) noexcept {
    if (text.size() >= 8) {  // the last eight bytes stand for those that make no whole word
        std::string_view end = text.substr(text.size() - 8);
        return asciiPrefix(text) + 8 > text.size() && asciiPrefix(end) == 8;
    }
    return std::ranges::none_of(text, [](char c) { return static_cast<Byte>(c) >= 0x80; });
}

std::size_t validUTF8Prefix(std::string_view text) noexcept {
    std::size_t i = asciiPrefix(text);
    while (i < text.size()) {
        std::size_t length = sequenceLength(text.data() + i, text.size() - i);
        if (length == 0) return i;
        i += length;
        if (length > 1) i += asciiPrefix(text.substr(i));
    }
    return i;
}

bool isValidUTF8(std::string_view text) noexcept { return validUTF8Prefix(text) == text.size(); }

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

bool isWhiteSpace(std::uint32_t c) noexcept {
    if (c < 0x80) return c == ' ' || (c >= '\t' && c <= '\r');
    if (c < 0x2000) return c == 0x85 || c == 0xA0 || c == 0x1680;
    return c <= 0x200A || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

std::string_view trimmed(std::string_view text) noexcept {
    while (!text.empty()) {
        const std::size_t length = whiteSpaceAtFront(text);
        if (length == 0) break;
        text.remove_prefix(length);
    }
    while (!text.empty()) {
        const std::size_t length = whiteSpaceAtBack(text);
        if (length == 0) break;
        text.remove_suffix(length);
    }
    return text;
}

std::string repairedUTF8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = sequenceLength(bytes.data(), bytes.size());
        length > 0 ? void(text.append(bytes.substr(0, length))) : appendUTF8(text, kReplacement);
        bytes.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return text;
}

char* writeUTF8(std::string_view utf16, ByteOrder order, char* out, bool& isWellFormed) noexcept {
    for (std::size_t at = 0; at < utf16.size();) out = put(out, codePointAt(utf16, order, at, isWellFormed));
    return out;
}

std::optional<std::string> utf8FromUTF16(std::string_view utf16, ByteOrder order) {
    std::string text((utf16.size() + 1) / 2 * 3, '\0');
    bool isWellFormed = true;
    text.resize(static_cast<std::size_t>(writeUTF8(utf16, order, text.data(), isWellFormed) - text.data()));
    return isWellFormed ? std::optional(std::move(text)) : std::nullopt;
}

std::string repairedUTF8FromUTF16(std::string_view utf16, ByteOrder order) {
    std::string text((utf16.size() + 1) / 2 * 3, '\0');
    bool ignored = true;
    text.resize(static_cast<std::size_t>(writeUTF8(utf16, order, text.data(), ignored) - text.data()));
    return text;
}

std::string repairedUTF8FromUTF16(std::u16string_view units) {
    constexpr auto kNative = std::endian::native == std::endian::big ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
    return repairedUTF8FromUTF16({reinterpret_cast<const char*>(units.data()), units.size() * 2}, kNative);
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

std::u16string utf16FromUTF8(std::string_view validUTF8) {
    std::u16string units;
    units.reserve(validUTF8.size());
    while (!validUTF8.empty()) {
        const std::uint32_t c = takeCodePoint(validUTF8);
        if (c >= 0x10000) units += static_cast<char16_t>(0xD7C0 + (c >> 10));
        units += static_cast<char16_t>(c >= 0x10000 ? 0xDC00 + (c & 0x3FF) : c);
    }
    return units;
}

}  // namespace propertylist
