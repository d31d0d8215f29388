#include "linux/texts/DisplayText.h"

#include "propertylist/Unicode.h"

#include <cstdint>

namespace linux {

using namespace propertylist;

namespace {

constexpr std::string_view kEllipsis = "\xE2\x80\xA6";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::uint32_t kReplacementCode = 0xFFFD;

// Takes the first character, or one byte that starts none, off a text that is not empty.
std::uint32_t takeCharacter(std::string_view& text, std::string_view& bytes) {
    for (std::size_t length = 1; length <= 4 && length <= text.size(); ++length) {
        bytes = text.substr(0, length);
        if (isValidUTF8(bytes)) return takeCodePoint(text);
    }
    text.remove_prefix(1);
    bytes = kReplacement;
    return kReplacementCode;
}

bool isBlank(std::uint32_t code) {
    return code <= 0x20 || (code >= 0x7F && code <= 0xA0) || code == 0x2028 || code == 0x2029;
}

bool isDirectional(std::uint32_t code) {
    return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

std::string displayText(std::string_view text) {
    std::string shown;
    std::size_t characters = 0;
    bool blankIsDue = false;
    while (!text.empty()) {
        std::string_view bytes;
        const std::uint32_t code = takeCharacter(text, bytes);
        if (isDirectional(code)) continue;
        if (isBlank(code)) {
            blankIsDue = !shown.empty();
            continue;
        }
        characters += 1 + blankIsDue;
        if (characters > kMaximumDisplayCharacters) return shown.append(kEllipsis);
        if (blankIsDue) shown += ' ';
        blankIsDue = false;
        shown += bytes;
    }
    return shown;
}

}  // namespace linux
