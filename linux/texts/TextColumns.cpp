#include "linux/texts/TextColumns.h"

#include <algorithm>
#include <cstdint>

#ifdef TYPESLATE_HAVE_UNISTRING
#include <unilbrk.h>
#include <uniwidth.h>
#endif

namespace linux {

namespace {

constexpr std::size_t kGap = 2;             // blanks between two columns
constexpr std::size_t kMeaningIndent = 30;  // where the second column of a help starts

#ifdef TYPESLATE_HAVE_UNISTRING
// What is written here is always UTF-8, whatever the locale says.
constexpr const char* kEncoding = "UTF-8";

const std::uint8_t* bytesOf(std::string_view text) { return reinterpret_cast<const std::uint8_t*>(text.data()); }

// For each byte one of unilbrk.h's marks: whether a line ends before it. What is typed as one word stays one, which
// some versions of the library would part after a colon.
std::vector<char> lineBreaks(std::string_view text, std::size_t columns) {
    std::vector<char> marks(text.size()), wanted(text.size(), UC_BREAK_UNDEFINED);
    for (std::size_t i = 1; i < text.size(); ++i)
        if (text[i - 1] == ':' && text[i] != ' ') wanted[i] = UC_BREAK_PROHIBITED;
    u8_width_linebreaks(bytesOf(text), text.size(), static_cast<int>(columns), 0, 0, wanted.data(), kEncoding,
                        marks.data());
    return marks;
}
#endif

void removeTrailingBlanks(std::string& text) { text.resize(text.find_last_not_of(' ') + 1); }

std::vector<std::size_t> columnWidths(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size());
    for (const auto& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columnsOf(row[i]));
    for (std::size_t& width : widths) width = std::min(width, kWidestCell);
    return widths;
}

std::string padded(std::string_view text, std::size_t columns) {
    return std::string(text).append(columns - std::min(columns, columnsOf(text)), ' ');
}

}  // namespace

#ifdef TYPESLATE_HAVE_UNISTRING

std::size_t columnsOf(std::string_view text) {
    return static_cast<std::size_t>(u8_width(bytesOf(text), text.size(), kEncoding));
}

std::string wrapped(std::string_view text, std::size_t indent) {
    const std::vector<char> marks = lineBreaks(text, kHelpColumns - indent);
    std::string lines;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (marks[i] == UC_BREAK_POSSIBLE) {
            removeTrailingBlanks(lines);
            lines.append("\n").append(indent, ' ');
        }
        lines += text[i];
    }
    return lines;
}

#else

std::size_t columnsOf(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string wrapped(std::string_view text, std::size_t) { return std::string(text); }

#endif

std::string tableText(const std::vector<std::vector<std::string>>& rows) {
    const std::vector<std::size_t> widths = columnWidths(rows);
    std::string text;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) line += padded(row[i], widths[i]).append(kGap, ' ');
        removeTrailingBlanks(line);
        text += line + "\n";
    }
    return text;
}

std::string helpItem(std::string_view term, std::string_view meaning) {
    std::string text = padded("  " + std::string(term), kMeaningIndent);
    if (columnsOf(text) > kMeaningIndent || !text.ends_with("  ")) text.append("\n").append(kMeaningIndent, ' ');
    text += wrapped(meaning, kMeaningIndent);
    removeTrailingBlanks(text);
    return text + "\n";
}

}  // namespace linux
