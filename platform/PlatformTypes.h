// Small types that several interfaces share.
#pragma once

#include "propertylist/PropertyList.h"

#include <cstdint>
#include <string_view>

namespace platform {

// The values that cross every interface.
using propertylist::Date;
using propertylist::mutableArray;
using propertylist::MutableDictionary;
using propertylist::PropertyList;

// A platform status: 0 for success, negative for an error.
using OSStatus = std::int32_t;
inline constexpr OSStatus kNoErr = 0;
inline constexpr OSStatus kBadName = -37;
inline constexpr OSStatus kFileNotFound = -43;
inline constexpr OSStatus kDuplicateFile = -48;
inline constexpr OSStatus kParamErr = -50;
inline constexpr OSStatus kPermissionErr = -54;
inline constexpr OSStatus kIOErr = -36;
inline constexpr OSStatus kOtherVolume = -1303;
inline constexpr OSStatus kFileTooLarge = -1309;
inline constexpr OSStatus kNotAFolder = -1407;
inline constexpr OSStatus kNotAFile = -1408;
inline constexpr OSStatus kTooMany = -1409;

// A short English description, for logs and alerts; never empty.
constexpr std::string_view statusText(OSStatus status) {
    switch (status) {
        case kNoErr:
            return "No error";
        case kIOErr:
            return "I/O error";
        case kBadName:
            return "Not a name that a file can have";
        case kFileNotFound:
            return "File not found";
        case kDuplicateFile:
            return "A file of this name exists already";
        case kParamErr:
            return "Bad parameter";
        case kPermissionErr:
            return "Permission denied";
        case kOtherVolume:
            return "A link to another file system";
        case kFileTooLarge:
            return "Too large to be read";
        case kNotAFolder:
            return "Not a folder";
        case kNotAFile:
            return "Not a regular file";
        case kTooMany:
            return "Too many folders";
        default:
            return "Unknown error";
    }
}

// Four characters as a number, the first in the highest byte: 'sysv'.
using FourCharCode = std::uint32_t;
consteval FourCharCode fourCharCode(const char (&text)[5]) {
    FourCharCode code = 0;
    for (int i = 0; i < 4; ++i) code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}
inline constexpr FourCharCode kUnknownCreator = fourCharCode("????");

}  // namespace platform
