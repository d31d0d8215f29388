// The text of a file whose encoding nobody stated.
//
// A byte-order mark decides: UTF-8 (what is malformed becomes U+FFFD) or UTF-16 of either byte order (a lone surrogate
// or a single last byte becomes U+FFFD). Without one, bytes that are valid UTF-8 are UTF-8 and all others Mac OS Roman,
// in which every byte is a character.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace fontcatalog {

struct Text {
    std::shared_ptr<const std::string> owner;
    std::string_view characters;  // valid UTF-8 without a byte-order mark, within *owner
    bool isMacRoman = false;      // the characters are Mac OS Roman instead, as only listText() leaves them
};

// Plain UTF-8 is not copied. An empty text for a null pointer.
Text decodedText(std::shared_ptr<const std::string> bytes);
// Leaves Mac OS Roman as it is, for readers that convert no more than they keep.
Text listText(std::shared_ptr<const std::string> bytes);
void appendMacRoman(std::string& text, std::string_view macRoman);
// How many bytes at the front are ASCII.
std::size_t lengthOfAsciiRun(std::string_view bytes);

// Two surrogates in the right order are one character; a lone one becomes U+FFFD.
std::string utf8FromUtf16(std::u16string_view units);
std::u16string utf16FromUtf8(std::string_view validText);
char16_t macRomanCharacter(unsigned char byte);

}  // namespace fontcatalog
