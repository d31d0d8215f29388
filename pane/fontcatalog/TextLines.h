// Lines of text as the font list and the name database have them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace fontcatalog {

// What Unicode counts as white space: tab to carriage return, space, no-break space, the typographic spaces, the line
// and paragraph separators.
bool isWhiteSpace(std::uint32_t codePoint);
std::string_view trimmedWithCare(std::string_view validUtf8);

// Without white space at both ends.
inline std::string_view trimmed(std::string_view validUtf8) {
    const auto isSurelyNone = [](char c) { return static_cast<signed char>(c) > ' '; };
    if (!validUtf8.empty() && isSurelyNone(validUtf8.front()) && isSurelyNone(validUtf8.back())) return validUtf8;
    return trimmedWithCare(validUtf8);
}

// Lines end at any run of "\r" and "\n"; they come trimmed at both ends, and those with nothing left are passed over.
class TextLines {
public:
    explicit TextLines(std::string_view validUtf8)
        : rest_(validUtf8), hasReturns_(validUtf8.find('\r') != std::string_view::npos) {}

    bool next(std::string_view& line) {
        while (!segment_.empty() || !rest_.empty()) {
            if (segment_.empty()) segment_ = takeUpTo('\n', rest_);
            line = trimmed(hasReturns_ ? takeUpTo('\r', segment_) : std::exchange(segment_, {}));
            if (!line.empty()) return true;
        }
        return false;
    }

private:
    static std::string_view takeUpTo(char end, std::string_view& text) {
        const std::size_t length = std::min(text.find(end), text.size());
        const std::string_view taken = text.substr(0, length);
        text.remove_prefix(std::min(length + 1, text.size()));
        return taken;
    }

    std::string_view rest_;
    std::string_view segment_;  // what is left of the text up to the next "\n"
    bool hasReturns_;           // most texts have but one of the two characters
};

}  // namespace fontcatalog
