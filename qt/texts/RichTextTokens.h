// Rich text cut into its tokens.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace qt {

struct RichTextToken {
    enum class Kind { OpenGroup, CloseGroup, Control, Byte, End };
    Kind kind = Kind::End;
    std::string_view control;      // a word, or one character that is no letter
    std::optional<int> parameter;  // of a control word; the byte of \'hh
    unsigned char byte = 0;
};

class RichTextTokens {
public:
    explicit RichTextTokens(std::string_view text) : rest_(text) {}
    RichTextToken next();
    void skip(std::size_t bytes) { rest_.remove_prefix(bytes < rest_.size() ? bytes : rest_.size()); }

private:
    RichTextToken control();
    std::optional<int> number();
    std::string_view rest_;
};

}  // namespace qt
