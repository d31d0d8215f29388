// Lines of text as the font list and the name database have them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

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
        : rest_(validUtf8),
          end_(validUtf8.find('\n') == std::string_view::npos ? '\r' : '\n'),
          hasBoth_(end_ == '\n' && validUtf8.find('\r') != std::string_view::npos) {}

    bool next(std::string_view& line) {
        while (!rest_.empty()) {
            line = trimmed(take());
            if (!line.empty()) return true;
        }
        return false;
    }

private:
    // Most texts have but one of the two characters; one search then is enough.
    std::string_view take() {
        std::size_t length = std::min(rest_.find(end_), rest_.size());
        if (hasBoth_) length = std::min(rest_.substr(0, length).find('\r'), length);
        const std::string_view line = rest_.substr(0, length);
        rest_.remove_prefix(std::min(length + 1, rest_.size()));
        return line;
    }

    std::string_view rest_;
    char end_;
    bool hasBoth_;
};

}  // namespace fontcatalog
