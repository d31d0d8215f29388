// Text that is valid or refused: there are no replacement characters and no lone surrogates here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace propertylist {

enum class ByteOrder { BigEndian, LittleEndian };

bool isASCII(std::string_view text) noexcept;
// No overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUTF8(std::string_view text) noexcept;
// True for the code points that UTF-8 can hold.
constexpr bool isUnicodeScalar(std::uint32_t c) noexcept { return c < 0xD800 || (c >= 0xE000 && c <= 0x10FFFF); }

// Appends the UTF-8 form of a code point, which must be a Unicode scalar.
void appendUTF8(std::string& text, std::uint32_t codePoint);
// The first code point of valid UTF-8 text that is not empty, which is taken off its front.
std::uint32_t takeCodePoint(std::string_view& text) noexcept;

// Writes the UTF-8 form of UTF-16 bytes and returns its length; `out` must have room for 3 bytes for each 2 of the
// input. Nothing for an odd number of bytes or an unpaired surrogate.
std::optional<std::size_t> writeUTF8(std::string_view utf16, ByteOrder order, char* out) noexcept;
std::optional<std::string> utf8FromUTF16(std::string_view utf16, ByteOrder order);

std::size_t utf16Units(std::string_view validUTF8) noexcept;
// Writes the big-endian UTF-16 form of valid UTF-8, two bytes for each unit, and returns the end of it.
char* writeUTF16BigEndian(std::string_view validUTF8, char* out) noexcept;

}  // namespace propertylist
