// Small types that several interfaces share.
#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

// A platform status: 0 for success, negative for an error.
using OSStatus = std::int32_t;
inline constexpr OSStatus kNoErr = 0;
inline constexpr OSStatus kBadName = -37;
inline constexpr OSStatus kFileNotFound = -43;
inline constexpr OSStatus kDuplicateFile = -48;
inline constexpr OSStatus kParamErr = -50;
inline constexpr OSStatus kPermissionErr = -54;
inline constexpr OSStatus kIOErr = -36;
inline constexpr OSStatus kNotAFolder = -1407;

// A short English description, for logs and alerts; never empty.
std::string_view statusText(OSStatus status);

// Four characters as a number, the first in the highest byte: 'sysv'.
using FourCharCode = std::uint32_t;
consteval FourCharCode fourCharCode(const char (&text)[5]) {
    FourCharCode code = 0;
    for (int i = 0; i < 4; ++i) code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}
inline constexpr FourCharCode kUnknownCreator = fourCharCode("????");

}  // namespace platform
