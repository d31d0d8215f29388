#include "pane/fontcatalog/EscapedName.h"

#include "pane/fontcatalog/TextEncoding.h"
#include "propertylist/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace fontcatalog {
namespace {

constexpr std::size_t kUnicodeSpan = 4;
constexpr std::size_t kSingleByteSpan = 2;

std::optional<std::uint32_t> hexDigit(char16_t unit) {
    if (unit >= u'0' && unit <= u'9') return unit - u'0';
    const char16_t lower = unit | 0x20;
    if (lower >= u'a' && lower <= u'f') return lower - u'a' + 10;
    return std::nullopt;
}

std::optional<std::uint32_t> hexNumber(std::u16string_view span) {
    while (!span.empty() && propertylist::isWhiteSpace(span.front())) span.remove_prefix(1);
    if (span.starts_with(u"0x") || span.starts_with(u"0X")) span.remove_prefix(2);
    if (span.empty() || !hexDigit(span.front())) return std::nullopt;
    std::uint32_t number = 0;
    for (; !span.empty() && hexDigit(span.front()); span.remove_prefix(1))
        number = number << 4 | *hexDigit(span.front());
    return number;
}

std::optional<char16_t> replacementFor(std::u16string_view span, bool isUnicode) {
    const auto number = hexNumber(span);
    if (!number) return std::nullopt;
    if (isUnicode) return static_cast<char16_t>(*number);
    return macRomanCharacter(static_cast<unsigned char>(*number));
}

std::size_t spanLength(bool isUnicode) { return isUnicode ? kUnicodeSpan : kSingleByteSpan; }

// The usual name: every span is whole and ASCII, none holds a backslash, and none stands for one or for half a
// character. Replacements then can neither meet nor make one another, and a single pass gives the same result. False
// for all other names.
bool decodeInOnePass(std::string_view input, bool isUnicode, std::string& result) {
    const std::size_t length = spanLength(isUnicode);
    for (;;) {
        const std::size_t backslash = input.find('\\');
        result.append(input.substr(0, backslash));
        if (backslash == std::string_view::npos) return true;
        const std::string_view span = input.substr(backslash + 1, length);
        char16_t units[kUnicodeSpan];
        for (std::size_t i = 0; i < span.size(); ++i) units[i] = static_cast<unsigned char>(span[i]);
        if (span.size() < length || span.find('\\') != std::string_view::npos || !propertylist::isASCII(span))
            return false;
        const auto replacement = replacementFor({units, length}, isUnicode);
        if (replacement == u'\\' || (replacement && !propertylist::isUnicodeScalar(*replacement))) return false;
        if (replacement)
            propertylist::appendUTF8(result, *replacement);
        else
            result.append(input.substr(backslash, length + 1));
        input.remove_prefix(backslash + 1 + length);
    }
}

// A text in which codes are replaced one after the other, with an index of what codes it holds at the moment: a search
// through the whole text for each code would take time with the square of its length.
class CodeReplacer {
public:
    CodeReplacer(std::u16string_view text, bool isUnicode)
        : units_(text), next_(text.size()), previous_(text.size()), length_(spanLength(isUnicode)) {
        for (std::uint32_t i = 0; i < text.size(); ++i) {
            next_[i] = i + 1;
            previous_[i] = i - 1;  // of the first unit: kNone
        }
        for (std::uint32_t i = 0; i < text.size(); ++i) enter(i);
    }

    // Every occurrence of a whole span behind a backslash, from left to right; what the replacements make of it is not
    // searched again.
    void replaceAll(std::u16string_view span, char16_t replacement) {
        const auto found = positions_.find(packed(span));
        if (found == positions_.end()) return;
        std::vector<std::uint32_t> candidates = std::move(found->second);
        positions_.erase(found);
        std::sort(candidates.begin(), candidates.end());
        candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
        for (const std::uint32_t position : candidates)
            if (spanAt(position) == packed(span)) replace(position, replacement);
    }

    std::u16string text() const {
        std::u16string result;
        for (std::uint32_t i = 0; i < units_.size(); i = next_[i]) result += units_[i];
        return result;
    }

private:
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};
    static constexpr char16_t kRemoved = 0xFFFF;  // in place of a backslash, so that its position no longer counts

    static std::uint64_t packed(std::u16string_view span) {
        std::uint64_t value = 0;
        for (const char16_t unit : span) value = value << 16 | unit;
        return value;
    }

    // Of the backslash at the position; nothing when there is none, or when the text ends within its span.
    std::optional<std::uint64_t> spanAt(std::uint32_t position) const {
        if (units_[position] != u'\\') return std::nullopt;
        std::uint64_t value = 0;
        std::uint32_t unit = next_[position];
        for (std::size_t i = 0; i < length_; ++i, unit = next_[unit]) {
            if (unit >= units_.size()) return std::nullopt;
            value = value << 16 | units_[unit];
        }
        return value;
    }

    // Entries are not taken back when a span changes; replaceAll passes over those that no longer hold.
    void enter(std::uint32_t position) {
        if (const auto span = spanAt(position)) positions_[*span].push_back(position);
    }

    void replace(std::uint32_t position, char16_t replacement) {
        std::uint32_t end = next_[position];
        for (std::size_t i = 0; i < length_; ++i) {
            units_[end] = kRemoved;
            end = next_[end];
        }
        units_[position] = replacement;
        next_[position] = end;
        if (end < units_.size()) previous_[end] = position;
        std::uint32_t changed = position;
        for (std::size_t i = 0; i <= length_ && changed != kNone; ++i, changed = previous_[changed]) enter(changed);
    }

    std::u16string units_;  // of a removed one, kRemoved
    std::vector<std::uint32_t> next_, previous_;
    std::map<std::uint64_t, std::vector<std::uint32_t>> positions_;  // by packed span
    const std::size_t length_;
};

std::u16string replacedEverywhere(std::u16string_view text, std::u16string_view pattern, char16_t replacement) {
    std::u16string result;
    for (;;) {
        const std::size_t found = text.find(pattern);
        result.append(text.substr(0, found));
        if (found == std::u16string_view::npos) return result;
        result += replacement;
        text.remove_prefix(found + pattern.size());
    }
}

std::u16string decodeInTurn(std::u16string_view input, bool isUnicode) {
    const std::size_t length = spanLength(isUnicode);
    CodeReplacer replacer(input, isUnicode);
    std::size_t backslash = input.find(u'\\');
    for (; backslash < input.size() && input.size() - backslash > length;
         backslash = input.find(u'\\', backslash + 1)) {
        const std::u16string_view span = input.substr(backslash + 1, length);
        if (const auto replacement = replacementFor(span, isUnicode)) replacer.replaceAll(span, *replacement);
    }
    // The last few backslashes may have a shorter span, which matches the beginning of longer ones too.
    std::u16string result = replacer.text();
    for (; backslash != std::u16string_view::npos; backslash = input.find(u'\\', backslash + 1))
        if (const auto replacement = replacementFor(input.substr(backslash + 1), isUnicode))
            result = replacedEverywhere(result, input.substr(backslash), *replacement);
    return result;
}

}  // namespace

std::string escapedNameForString_isUnicode(std::string_view text, bool isUnicode) {
    std::string result;
    result.reserve(text.size());
    if (decodeInOnePass(text, isUnicode, result)) return result;
    return propertylist::repairedUTF8FromUTF16(decodeInTurn(propertylist::utf16FromUTF8(text), isUnicode));
}

}  // namespace fontcatalog
