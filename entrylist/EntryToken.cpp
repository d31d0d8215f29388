#include "entrylist/EntryToken.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

using platform::PropertyList;

namespace entrylist {
namespace {

using Type = PropertyList::Type;

// FNV-1a of 64 bits.
constexpr std::uint64_t kBasis = 0xcbf29ce484222325, kPrime = 0x100000001b3;

std::uint64_t withByte(std::uint64_t hash, unsigned char byte) { return (hash ^ byte) * kPrime; }

std::uint64_t withNumber(std::uint64_t hash, std::uint64_t number) {
    for (int shift = 0; shift < 64; shift += 8) hash = withByte(hash, static_cast<unsigned char>(number >> shift));
    return hash;
}

std::uint64_t withBytes(std::uint64_t hash, std::string_view bytes) {
    for (char byte : bytes) hash = withByte(hash, static_cast<unsigned char>(byte));
    return hash;
}

// Equal numbers of one kind are not always the same bits.
std::uint64_t bitsOf(double number) {
    if (std::isnan(number)) number = std::numeric_limits<double>::quiet_NaN();
    return std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
}

std::uint64_t scalarBits(const PropertyList& value) {
    switch (value.type()) {
        case Type::Boolean:
            return value.boolValue();
        case Type::Integer:
            return value.isUnsigned() ? value.unsignedValue() : static_cast<std::uint64_t>(value.integerValue());
        case Type::Real:
            return bitsOf(value.realValue());
        case Type::Date:
            return static_cast<std::uint64_t>(value.dateValue()->microseconds);
        default:
            return value.size();
    }
}

std::uint64_t hashOf(const PropertyList& value) {
    std::uint64_t hash = withNumber(withByte(kBasis, static_cast<unsigned char>(value.type())), scalarBits(value));
    hash = withByte(hash, value.isUnsigned());
    hash = withBytes(withBytes(hash, value.stringValue()), value.dataValue());
    for (const PropertyList& element : value.elements()) hash = withNumber(hash, hashOf(element));
    // Dictionaries that differ in the order of their keys alone are equal.
    std::uint64_t sum = 0;
    for (const auto& [key, inner] : value.entries()) sum += withNumber(hashOf(key), hashOf(inner));
    return withNumber(hash, sum);
}

}  // namespace

std::string tokenOf(std::span<const PropertyList> list) {
    std::uint64_t hash = kBasis;
    for (const PropertyList& entry : list) hash = withNumber(hash, hashOf(entry));
    std::string digits;
    for (int shift = 60; shift >= 0; shift -= 4) digits += "0123456789abcdef"[hash >> shift & 0xF];
    return digits;
}

}  // namespace entrylist
