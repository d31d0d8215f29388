// UTF-8 and UTF-16. Nothing here throws but for want of memory, and every function takes time in proportion to its
// input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace propertylist {

enum class ByteOrder { BigEndian, LittleEndian };

// Whether all bytes are below 0x80; true for an empty text.
bool isASCII(std::string_view text) noexcept;
// No overlong forms, no surrogates, nothing above U+10FFFF; U+0000 is valid.
bool isValidUTF8(std::string_view text) noexcept;
// How many bytes at the front are valid: all of them, or those before the first sequence that is not.
std::size_t validUTF8Prefix(std::string_view text) noexcept;
// The text with U+FFFD for every byte that belongs to no valid sequence.
std::string repairedUTF8(std::string_view bytes);

// True for the code points that UTF-8 can hold: all but surrogates, up to U+10FFFF.
constexpr bool isUnicodeScalar(std::uint32_t c) noexcept { return c < 0xD800 || (c >= 0xE000 && c <= 0x10FFFF); }
// Appends the UTF-8 form of a code point, which must be a Unicode scalar.
void appendUTF8(std::string& text, std::uint32_t codePoint);
// The first code point of valid UTF-8 text that is not empty, which is taken off its front.
std::uint32_t takeCodePoint(std::string_view& validUTF8) noexcept;

// What Unicode counts as white space: tab to carriage return, space, no-break space, the typographic spaces, the line
// and paragraph separators.
bool isWhiteSpace(std::uint32_t codePoint) noexcept;
// Without white space at both ends.
std::string_view trimmed(std::string_view validUTF8) noexcept;

// Writes the UTF-8 form of UTF-16 bytes without a byte-order mark and returns its end; `out` must have room for 3 bytes
// for each 2 of the input or part of 2. An unpaired surrogate and a single last byte become U+FFFD and set
// `isWellFormed` to false; it is never set to true.
char* writeUTF8(std::string_view utf16, ByteOrder order, char* out, bool& isWellFormed) noexcept;
// Nothing for what is not well-formed.
std::optional<std::string> utf8FromUTF16(std::string_view utf16, ByteOrder order);
// U+FFFD for what is not well-formed.
std::string repairedUTF8FromUTF16(std::string_view utf16, ByteOrder order);
std::string repairedUTF8FromUTF16(std::u16string_view units);

// How many UTF-16 units the text has.
std::size_t utf16Units(std::string_view validUTF8) noexcept;
// Writes the big-endian UTF-16 form of the text, two bytes for each unit, and returns its end.
char* writeUTF16BigEndian(std::string_view validUTF8, char* out) noexcept;
std::u16string utf16FromUTF8(std::string_view validUTF8);

}  // namespace propertylist
