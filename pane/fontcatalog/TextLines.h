// Lines of text as the font list and the name database have them: they end at any run of "\r" and "\n".
#pragma once

#include "propertylist/Unicode.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace fontcatalog {

// Takes a text apart. Either line end is looked for only when the last one found of its kind lies behind: a text has
// mostly but one kind, and is then searched for the other once.
class LineTaker {
public:
    explicit LineTaker(std::string_view text) : textEnd_(text.data() + text.size()) { goTo(text); }

    // Goes on with a part of the text behind the one taken before.
    void goTo(std::string_view part) {
        at_ = part.data();
        end_ = at_ + part.size();
    }
    // The next line without its end, empty between two line ends; false behind the last.
    bool take(std::string_view& line) {
        if (at_ == end_) return false;
        const char* lineEnd = std::min({next(lineFeed_, '\n'), next(carriageReturn_, '\r'), end_});
        line = {at_, static_cast<std::size_t>(lineEnd - at_)};
        at_ = lineEnd == end_ ? end_ : lineEnd + 1;
        return true;
    }

private:
    const char* next(const char*& found, char lineEnd) const {
        if (found && found >= at_) return found;
        const void* next = std::memchr(at_, lineEnd, static_cast<std::size_t>(textEnd_ - at_));
        return found = next ? static_cast<const char*>(next) : textEnd_;
    }

    const char *textEnd_, *at_ = nullptr, *end_ = nullptr;
    const char *lineFeed_ = nullptr, *carriageReturn_ = nullptr;  // the end of the text when there is no more
};

// Without white space at both ends. Most lines have none, which two comparisons tell.
inline std::string_view trimmedLine(std::string_view validUTF8) {
    const auto isNone = [](char c) { return static_cast<signed char>(c) > ' '; };
    if (!validUTF8.empty() && isNone(validUTF8.front()) && isNone(validUTF8.back())) return validUTF8;
    return propertylist::trimmed(validUTF8);
}

}  // namespace fontcatalog
