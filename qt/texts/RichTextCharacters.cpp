#include "qt/texts/RichTextCharacters.h"

#include <algorithm>
#include <iterator>

namespace qt {

namespace {

constexpr char16_t kUnknown = u'\uFFFD';
constexpr char16_t kLineBreak = u'\u2028', kParagraphBreak = u'\u2029';

// Characters of the bytes from 0x80 on.
constexpr std::u16string_view kMacRoman =
    u"\u00C4\u00C5\u00C7\u00C9\u00D1\u00D6\u00DC\u00E1\u00E0\u00E2\u00E4\u00E3\u00E5\u00E7\u00E9\u00E8"
    u"\u00EA\u00EB\u00ED\u00EC\u00EE\u00EF\u00F1\u00F3\u00F2\u00F4\u00F6\u00F5\u00FA\u00F9\u00FB\u00FC"
    u"\u2020\u00B0\u00A2\u00A3\u00A7\u2022\u00B6\u00DF\u00AE\u00A9\u2122\u00B4\u00A8\u2260\u00C6\u00D8"
    u"\u221E\u00B1\u2264\u2265\u00A5\u00B5\u2202\u2211\u220F\u03C0\u222B\u00AA\u00BA\u03A9\u00E6\u00F8"
    u"\u00BF\u00A1\u00AC\u221A\u0192\u2248\u2206\u00AB\u00BB\u2026\u00A0\u00C0\u00C3\u00D5\u0152\u0153"
    u"\u2013\u2014\u201C\u201D\u2018\u2019\u00F7\u25CA\u00FF\u0178\u2044\u20AC\u2039\u203A\uFB01\uFB02"
    u"\u2021\u00B7\u201A\u201E\u2030\u00C2\u00CA\u00C1\u00CB\u00C8\u00CD\u00CE\u00CF\u00CC\u00D3\u00D4"
    u"\uF8FF\u00D2\u00DA\u00DB\u00D9\u0131\u02C6\u02DC\u00AF\u02D8\u02D9\u02DA\u00B8\u02DD\u02DB\u02C7";
constexpr std::u16string_view kWindows =  // to 0x9F; above, a byte is its own code point
    u"\u20AC\uFFFD\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\uFFFD\u017D\uFFFD"
    u"\uFFFD\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\uFFFD\u017E\u0178";

struct Symbol {
    std::string_view control;
    char16_t character;
};
constexpr Symbol kSymbols[] = {{"tab", u'\t'},
                               {"line", kLineBreak},
                               {"emdash", u'\u2014'},
                               {"endash", u'\u2013'},
                               {"lquote", u'\u2018'},
                               {"rquote", u'\u2019'},
                               {"ldblquote", u'\u201C'},
                               {"rdblquote", u'\u201D'},
                               {"bullet", u'\u2022'},
                               {"emspace", u'\u2003'},
                               {"enspace", u'\u2002'},
                               {"~", u'\u00A0'},
                               {"_", u'\u2011'},
                               {"-", u'\u00AD'},
                               {"\\", u'\\'},
                               {"{", u'{'},
                               {"}", u'}'}};

bool isHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// Those that mark frames and objects inside the toolkit's documents are no characters either.
bool isNoCharacter(char16_t unit) {
    return (unit >= 0xFDD0 && unit <= 0xFDEF) || unit == 0xFFFC || unit == 0xFFFE || unit == 0xFFFF;
}

}  // namespace

char16_t richTextCharacter(unsigned char byte, RichTextCharacterSet set) {
    if (byte < 0x80) return byte;
    std::size_t index = byte - 0x80U;
    if (set == RichTextCharacterSet::MacRoman) return kMacRoman[index];
    return index < kWindows.size() ? kWindows[index] : byte;
}

char16_t richTextSymbol(std::string_view control) {
    auto found = std::ranges::find(kSymbols, control, &Symbol::control);
    return found == std::end(kSymbols) ? u'\0' : found->character;
}

void replaceLoneSurrogates(std::u16string& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1]))
            ++i;
        else if (isHighSurrogate(text[i]) || isLowSurrogate(text[i]))
            text[i] = kUnknown;
    }
}

char16_t allowedInText(char16_t unit) {
    if (unit == kParagraphBreak || unit == u'\v' || unit == u'\f') return kLineBreak;
    bool isControl = (unit < 0x20 && unit != u'\t') || (unit >= 0x7F && unit < 0xA0);
    if (isControl) return 0;
    return isNoCharacter(unit) ? kUnknown : unit;
}

}  // namespace qt
