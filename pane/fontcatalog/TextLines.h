// Lines of text as the font list and the name database have them.
#pragma once

#include <cstdint>
#include <string_view>

namespace fontcatalog {

// What Unicode counts as white space: tab to carriage return, space, no-break space, the typographic spaces, the line
// and paragraph separators.
bool isWhiteSpace(std::uint32_t codePoint);
std::string_view trimmed(std::string_view validUtf8);

// Lines end at any run of "\r" and "\n"; they come trimmed at both ends, and those with nothing left are passed over.
class TextLines {
public:
    explicit TextLines(std::string_view validUtf8) : rest_(validUtf8) {}
    bool next(std::string_view& line);

private:
    std::string_view rest_;
};

}  // namespace fontcatalog
