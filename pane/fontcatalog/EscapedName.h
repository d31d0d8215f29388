// The backslash-hex codes of the font name database.
#pragma once

#include <string>
#include <string_view>

namespace fontcatalog {

// A code is a backslash and its span: the next four characters (Unicode form), the next two (single-byte form), or what
// is left of the text. Characters are UTF-16 units. The span begins with a hexadecimal number, after optional white
// space and an optional "0x", and need not end with it; the number's low bits are one UTF-16 unit or one Mac OS Roman
// byte, which takes the place of the backslash and its whole span. A span without a number stays as it is.
//
// Codes are taken from the input in turn, and each is replaced everywhere in the result, where earlier replacements may
// have made further backslashes and spans. The units are joined at the end: two codes that are a surrogate pair give
// one character, a lone surrogate becomes U+FFFD.
//
// The input must be valid UTF-8; the result is. Takes time in proportion to the input's length (but for sorting), no
// matter what codes it holds.
std::string escapedNameForString_isUnicode(std::string_view validUtf8, bool isUnicode);

}  // namespace fontcatalog
