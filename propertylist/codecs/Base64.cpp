#include "propertylist/codecs/Base64.h"

#include <array>
#include <cstdint>

namespace propertylist {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr int kInvalid = -1;
constexpr int kWhiteSpace = -2;

constexpr std::array<std::int8_t, 256> kValues = [] {
    std::array<std::int8_t, 256> values{};
    values.fill(kInvalid);
    for (std::size_t i = 0; i < kAlphabet.size(); ++i)
        values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::int8_t>(i);
    for (char blank : {' ', '\t', '\n', '\r', '\f', '\v'}) values[static_cast<unsigned char>(blank)] = kWhiteSpace;
    return values;
}();

std::uint32_t byteAt(std::string_view bytes, std::size_t index) {
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
}

int valueOf(char c) { return kValues[static_cast<unsigned char>(c)]; }

}  // namespace

std::string base64Encoded(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = byteAt(bytes, i) << 16 | byteAt(bytes, i + 1) << 8 | byteAt(bytes, i + 2);
        std::size_t digits = bytes.size() - i >= 3 ? 4 : bytes.size() - i + 1;
        for (std::size_t d = 0; d < 4; ++d) text += d < digits ? kAlphabet[group >> (18 - 6 * d) & 63] : '=';
    }
    return text;
}

std::optional<std::string> base64Decoded(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    int digits = 0, padding = 0;
    for (char c : text) {
        int value = valueOf(c);
        if (value == kWhiteSpace) continue;
        if (c == '=') {
            ++padding;
            continue;
        }
        if (value == kInvalid || padding > 0) return std::nullopt;
        group = group << 6 | static_cast<std::uint32_t>(value);
        if (++digits < 4) continue;
        for (int shift : {16, 8, 0}) bytes += static_cast<char>(group >> shift);
        group = 0;
        digits = 0;
    }
    if (digits == 0) return padding == 0 ? std::optional(bytes) : std::nullopt;
    if (digits == 1 || digits + padding != 4) return std::nullopt;
    group <<= 6 * (4 - digits);
    bytes += static_cast<char>(group >> 16);
    if (digits == 3) bytes += static_cast<char>(group >> 8);
    return bytes;
}

}  // namespace propertylist
