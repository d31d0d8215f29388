#include "qt/texts/RichTextTokens.h"

#include <algorithm>
#include <charconv>

namespace qt {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isLineEnd(char c) { return c == '\r' || c == '\n'; }

}  // namespace

RichTextToken RichTextTokens::next() {
    using Kind = RichTextToken::Kind;
    while (!rest_.empty() && (isLineEnd(rest_[0]) || rest_[0] == '\0')) rest_.remove_prefix(1);
    if (rest_.empty()) return {};
    char first = rest_[0];
    rest_.remove_prefix(1);
    if (first == '{') return {Kind::OpenGroup, {}, {}, 0};
    if (first == '}') return {Kind::CloseGroup, {}, {}, 0};
    if (first == '\\') return control();
    return {Kind::Byte, {}, {}, static_cast<unsigned char>(first)};
}

RichTextToken RichTextTokens::control() {
    RichTextToken token{RichTextToken::Kind::Control, {}, {}, 0};
    if (rest_.empty()) return {};
    auto wordEnd = std::find_if_not(rest_.begin(), rest_.end(), isLetter);
    std::size_t length = std::max<std::size_t>(static_cast<std::size_t>(wordEnd - rest_.begin()), 1);
    bool isWord = isLetter(rest_[0]);
    token.control = rest_.substr(0, length);
    skip(length);
    if (token.control == "'") {
        int byte = 0;
        std::string_view digits = rest_.substr(0, 2);
        auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (error == std::errc()) token.parameter = byte;
        skip(static_cast<std::size_t>(end - digits.data()));
    } else if (isWord) {
        token.parameter = number();
        if (rest_.starts_with(' ')) skip(1);
    }
    return token;
}

// A number too large for anything is left as if there were none.
std::optional<int> RichTextTokens::number() {
    int value = 0;
    auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    skip(static_cast<std::size_t>(end - rest_.data()));
    return error == std::errc() ? std::optional(value) : std::nullopt;
}

}  // namespace qt
