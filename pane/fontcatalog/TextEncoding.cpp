#include "pane/fontcatalog/TextEncoding.h"

#include "propertylist/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace fontcatalog {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr char16_t kMacRomanUpperHalf[128] = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5,
    0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, 0x00F2, 0x00F4,
    0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6,
    0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, 0x221E, 0x00B1, 0x2264, 0x2265,
    0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF,
    0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, 0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044,
    0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9,
    0x0131, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7};

unsigned char byteAt(std::string_view text, std::size_t index) { return static_cast<unsigned char>(text[index]); }

bool isSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xE000; }

std::string repairedUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        std::size_t length = 1;
        while (length < 4 && !propertylist::isValidUTF8(bytes.substr(0, length))) ++length;
        if (propertylist::isValidUTF8(bytes.substr(0, length)))
            text.append(bytes.substr(0, length));
        else
            propertylist::appendUTF8(text, kReplacement), length = 1;
        bytes.remove_prefix(std::min(length, bytes.size()));
    }
    return text;
}

// One character of UTF-16 from `unitAt`, which answers for `count` units; moves `index` past it.
template <typename UnitAt>
char32_t nextCharacter(UnitAt unitAt, std::size_t count, std::size_t& index) {
    const char32_t unit = unitAt(index++);
    if (!isSurrogate(unit)) return unit;
    if (unit >= 0xDC00 || index == count) return kReplacement;
    const char32_t low = unitAt(index);
    if (low < 0xDC00 || low >= 0xE000) return kReplacement;
    ++index;
    return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
}

std::string fromUtf16Bytes(std::string_view bytes, bool isBigEndian) {
    const std::size_t count = bytes.size() / 2;
    const auto unitAt = [&](std::size_t i) -> char32_t {
        return byteAt(bytes, 2 * i + !isBigEndian) << 8u | byteAt(bytes, 2 * i + isBigEndian);
    };
    std::string text;
    text.reserve(count);
    for (std::size_t index = 0; index < count;) propertylist::appendUTF8(text, nextCharacter(unitAt, count, index));
    if (bytes.size() % 2) propertylist::appendUTF8(text, kReplacement);
    return text;
}

Text ownedText(std::string text) {
    auto owner = std::make_shared<const std::string>(std::move(text));
    return {owner, *owner};
}

}  // namespace

std::size_t lengthOfAsciiRun(std::string_view text) {
    std::size_t length = 0;
    for (; length + 8 <= text.size(); length += 8) {
        std::uint64_t bytes;
        std::memcpy(&bytes, text.data() + length, 8);
        if (bytes & 0x8080808080808080u) break;
    }
    while (length < text.size() && byteAt(text, length) < 0x80) ++length;
    return length;
}

void appendMacRoman(std::string& text, std::string_view bytes) {
    std::size_t growth = 0;
    for (const char byte : bytes) growth += static_cast<unsigned char>(byte) < 0x80 ? 0 : 2;
    text.reserve(text.size() + bytes.size() + growth);
    while (!bytes.empty()) {
        const std::size_t run = lengthOfAsciiRun(bytes);
        text.append(bytes.substr(0, run));
        if (run < bytes.size()) propertylist::appendUTF8(text, macRomanCharacter(byteAt(bytes, run)));
        bytes.remove_prefix(std::min(run + 1, bytes.size()));
    }
}

Text listText(std::shared_ptr<const std::string> bytes) {
    if (!bytes) return {};
    std::string_view all = *bytes;
    if (all.starts_with("\xFF\xFE")) return ownedText(fromUtf16Bytes(all.substr(2), false));
    if (all.starts_with("\xFE\xFF")) return ownedText(fromUtf16Bytes(all.substr(2), true));
    const bool hasMark = all.starts_with("\xEF\xBB\xBF");
    if (hasMark) all.remove_prefix(3);
    const bool isValid = propertylist::isValidUTF8(all);
    if (!isValid && hasMark) return ownedText(repairedUtf8(all));
    return {std::move(bytes), all, !isValid};
}

Text decodedText(std::shared_ptr<const std::string> bytes) {
    Text text = listText(std::move(bytes));
    if (!text.isMacRoman) return text;
    std::string decoded;
    appendMacRoman(decoded, text.characters);
    return ownedText(std::move(decoded));
}

std::string utf8FromUtf16(std::u16string_view units) {
    std::string text;
    text.reserve(units.size());
    const auto unitAt = [&](std::size_t i) -> char32_t { return units[i]; };
    for (std::size_t index = 0; index < units.size();)
        propertylist::appendUTF8(text, nextCharacter(unitAt, units.size(), index));
    return text;
}

std::u16string utf16FromUtf8(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    while (!text.empty()) {
        const std::uint32_t codePoint = propertylist::takeCodePoint(text);
        if (codePoint >= 0x10000) units += static_cast<char16_t>(0xD7C0 + (codePoint >> 10));
        units += static_cast<char16_t>(codePoint >= 0x10000 ? 0xDC00 + (codePoint & 0x3FF) : codePoint);
    }
    return units;
}

char16_t macRomanCharacter(unsigned char byte) { return byte < 0x80 ? byte : kMacRomanUpperHalf[byte - 0x80]; }

}  // namespace fontcatalog
