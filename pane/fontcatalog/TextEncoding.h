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

// What a file holds, as its reader gets it.
struct FileText {
    std::shared_ptr<const std::string> owner;
    std::string_view characters;  // valid UTF-8 without a byte-order mark, within *owner
    bool isMacRoman = false;      // the characters are Mac OS Roman instead, as only listText() leaves them
};

// Never fails: every byte becomes some character. Plain UTF-8 is not copied, and the text shares its owner; an empty
// text without one for a null pointer.
FileText decodedText(std::shared_ptr<const std::string> bytes);
// Leaves Mac OS Roman as it is, for readers that convert no more than they keep.
FileText listText(std::shared_ptr<const std::string> bytes);

// Every byte is a character: U+F8FF, in the private use area, stands for 0xF0.
char16_t macRomanCharacter(unsigned char byte);
// Appends the characters as UTF-8.
void appendMacRoman(std::string& text, std::string_view macRoman);

}  // namespace fontcatalog
