// The characters of rich text: bytes in the document's character set, and those that have controls of their own.
#pragma once

#include <string>
#include <string_view>

namespace qt {

enum class RichTextCharacterSet { Windows, MacRoman };

char16_t richTextCharacter(unsigned char byte, RichTextCharacterSet set);
char16_t richTextSymbol(std::string_view control);  // 0 when the control stands for no character

// Halves of surrogate pairs without their other half become U+FFFD.
void replaceLoneSurrogates(std::u16string& text);
// What a text may not contain becomes U+FFFD, or 0 when it is to be left out.
char16_t allowedInText(char16_t unit);

}  // namespace qt
