#include "pane/fontcatalog/TextLines.h"

#include "propertylist/Unicode.h"

namespace fontcatalog {
namespace {

bool isAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

// The length of the white space at the front, or at the back, of a text that is not empty; 0 when there is none.
std::size_t whiteSpaceAtFront(std::string_view text) {
    if (isAscii(text.front())) return isWhiteSpace(static_cast<unsigned char>(text.front()));
    std::string_view rest = text;
    return isWhiteSpace(propertylist::takeCodePoint(rest)) ? text.size() - rest.size() : 0;
}

std::size_t whiteSpaceAtBack(std::string_view text) {
    if (isAscii(text.back())) return isWhiteSpace(static_cast<unsigned char>(text.back()));
    std::size_t length = 1;
    while (length < text.size() && (text[text.size() - length] & 0xC0) == 0x80) ++length;
    std::string_view character = text.substr(text.size() - length);
    return isWhiteSpace(propertylist::takeCodePoint(character)) ? length : 0;
}

}  // namespace

bool isWhiteSpace(std::uint32_t c) {
    if (c < 0x80) return c == ' ' || (c >= '\t' && c <= '\r');
    if (c < 0x2000) return c == 0x85 || c == 0xA0 || c == 0x1680;
    return c <= 0x200A || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

std::string_view trimmedWithCare(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = whiteSpaceAtFront(text);
        if (length == 0) break;
        text.remove_prefix(length);
    }
    while (!text.empty()) {
        const std::size_t length = whiteSpaceAtBack(text);
        if (length == 0) break;
        text.remove_suffix(length);
    }
    return text;
}

}  // namespace fontcatalog
