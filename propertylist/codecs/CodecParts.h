// The halves of the two codecs, each in a file of its own, and what both halves of the binary one know.
//
// The binary property list, as CFBinaryPList.c of the open-source CoreFoundation describes it: the text "bplist00", the
// objects, a table of their offsets, and a trailer of 32 bytes (6 unused, the width of an offset, the width of a
// reference, the number of objects, the number of the top object, the offset of the table). All numbers are big-endian.
// An object begins with a byte whose upper half is its kind and whose lower half is its length, or 15 when the length
// follows as an integer object.
#pragma once

#include "propertylist/Codec.h"

#include <bit>
#include <cstring>

namespace propertylist {

// Nothing, or an empty text, for what the other form of the same name in Codec.h says; no value is nothing or deeper
// than the limit.
PropertyList decodeBinaryPropertyList(std::shared_ptr<const std::string> bytes, DecodeProblem& problem);
std::string encodeBinaryPropertyList(const PropertyList& value);
PropertyList decodeXMLPropertyList(std::string_view bytes, DecodeProblem& problem);
std::string encodeXMLPropertyList(const PropertyList& value);

// True for a value that holds the same values at so many places that walking it all would never end.
bool expandsTooFar(const PropertyList& value);

// Whether XML 1.0 allows the character, and how many bytes at the front of a text hold only such.
constexpr bool isXMLCharacter(char32_t c) {
    return c >= 0x20 ? c < 0xD800 || (c >= 0xE000 && c <= 0x10FFFF && c != 0xFFFE && c != 0xFFFF)
                     : c == '\t' || c == '\n' || c == '\r';
}
std::size_t xmlTextPrefix(std::string_view validUTF8);

// What both readers say of a value.
constexpr const char* kTooDeep = "nested too deeply";

constexpr std::string_view kBinaryMagic = "bplist00";

namespace binary {

constexpr std::size_t kHeaderSize = 8, kTrailerSize = 32;

enum Kind : std::uint8_t {
    kFalseMarker = 0x08,
    kTrueMarker = 0x09,
    kIntegerKind = 0x1,
    kRealKind = 0x2,
    kDateMarker = 0x33,
    kDataKind = 0x4,
    kASCIIKind = 0x5,
    kUTF16Kind = 0x6,
    kArrayKind = 0xA,
    kDictionaryKind = 0xD,
};

template <typename Number>
constexpr Number swapped(Number value) {
    if constexpr (std::endian::native == std::endian::big || sizeof value == 1) return value;
    if constexpr (sizeof value == 2) return __builtin_bswap16(value);
    if constexpr (sizeof value == 4) return __builtin_bswap32(value);
    return __builtin_bswap64(value);
}

// A number of 1 to 8 bytes; 8 bytes are read whatever the width, so the trailer or more must follow.
inline std::uint64_t loadNumber(const char* p, unsigned width) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return swapped(word) >> (64 - 8 * width);
}

// The width is 1, 2, 4 or 8.
inline char* storeNumber(char* p, std::uint64_t value, unsigned width) {
    std::uint64_t word = swapped(value << (64 - 8 * width));
    switch (width) {
        case 1:
            std::memcpy(p, &word, 1);
            break;
        case 2:
            std::memcpy(p, &word, 2);
            break;
        case 4:
            std::memcpy(p, &word, 4);
            break;
        default:
            std::memcpy(p, &word, 8);
    }
    return p + width;
}

}  // namespace binary
}  // namespace propertylist
