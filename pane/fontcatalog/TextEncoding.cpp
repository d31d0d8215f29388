#include "pane/fontcatalog/TextEncoding.h"

#include "propertylist/Unicode.h"

#include <algorithm>

namespace fontcatalog {
namespace {

using propertylist::ByteOrder;

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

FileText ownedText(std::string text) {
    auto owner = std::make_shared<const std::string>(std::move(text));
    return {owner, *owner};
}

}  // namespace

FileText listText(std::shared_ptr<const std::string> bytes) {
    if (!bytes) return {};
    std::string_view all = *bytes;
    if (all.starts_with("\xFF\xFE"))
        return ownedText(propertylist::repairedUTF8FromUTF16(all.substr(2), ByteOrder::LittleEndian));
    if (all.starts_with("\xFE\xFF"))
        return ownedText(propertylist::repairedUTF8FromUTF16(all.substr(2), ByteOrder::BigEndian));
    const bool hasMark = all.starts_with("\xEF\xBB\xBF");
    if (hasMark) all.remove_prefix(3);
    const bool isValid = propertylist::isValidUTF8(all);
    if (!isValid && hasMark) return ownedText(propertylist::repairedUTF8(all));
    return {std::move(bytes), all, !isValid};
}

FileText decodedText(std::shared_ptr<const std::string> bytes) {
    FileText text = listText(std::move(bytes));
    if (!text.isMacRoman) return text;
    std::string decoded;
    decoded.reserve(text.characters.size());
    appendMacRoman(decoded, text.characters);
    return ownedText(std::move(decoded));
}

char16_t macRomanCharacter(unsigned char byte) { return byte < 0x80 ? byte : kMacRomanUpperHalf[byte - 0x80]; }

void appendMacRoman(std::string& text, std::string_view macRoman) {
    const auto isOther = [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; };
    for (auto at = macRoman.begin(); at != macRoman.end(); ++at) {
        const auto other = std::find_if(at, macRoman.end(), isOther);
        text.append(at, other);
        if (other == macRoman.end()) return;
        propertylist::appendUTF8(text, macRomanCharacter(static_cast<unsigned char>(*other)));
        at = other;
    }
}

}  // namespace fontcatalog
