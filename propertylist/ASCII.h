// The letters, digits and blanks of ASCII. Nothing here asks the locale, and no byte above 0x7F is any of them.
#pragma once

#include <algorithm>
#include <string_view>

namespace propertylist {

constexpr bool isASCIIDigit(char c) noexcept { return c >= '0' && c <= '9'; }
constexpr char lowerASCII(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; }
constexpr bool isASCIILetter(char c) noexcept { return lowerASCII(c) >= 'a' && lowerASCII(c) <= 'z'; }
// Space, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool isASCIISpace(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr bool equalIgnoringASCIICase(std::string_view a, std::string_view b) noexcept {
    return std::ranges::equal(a, b, {}, lowerASCII, lowerASCII);
}

// Without blanks at both ends.
constexpr std::string_view trimmedASCII(std::string_view text) noexcept {
    while (!text.empty() && isASCIISpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isASCIISpace(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace propertylist
