#include "qt/texts/RichTextLinks.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace qt {

namespace {

constexpr std::size_t kLongestAddress = 2000;
constexpr std::string_view kBlanks = " \t";

bool beginsWith(std::string_view text, std::string_view word) {
    auto isSame = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
    return text.size() > word.size() &&
           std::equal(word.begin(), word.end(), text.begin(), [&](char w, char t) { return isSame(t, w); });
}

bool mayBeOpened(std::string_view address) {
    static constexpr std::array<std::string_view, 3> kBeginnings{"https://", "http://", "mailto:"};
    bool isPlain = std::ranges::none_of(address, [](unsigned char c) { return c <= ' ' || c > '~'; });
    return isPlain && address.size() <= kLongestAddress &&
           std::ranges::any_of(kBeginnings, [&](auto beginning) { return beginsWith(address, beginning); });
}

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text;
}

}  // namespace

std::string richTextLink(std::string_view instruction) {
    constexpr std::string_view kField = "hyperlink";
    instruction = trimmed(instruction);
    if (!beginsWith(instruction, kField)) return {};
    std::string_view address = trimmed(instruction.substr(kField.size()));
    bool isQuoted = address.starts_with('"');
    if (isQuoted) address.remove_prefix(1);
    address = address.substr(0, address.find_first_of(isQuoted ? "\"" : "\" \t"));
    return mayBeOpened(address) ? std::string(address) : std::string();
}

}  // namespace qt
