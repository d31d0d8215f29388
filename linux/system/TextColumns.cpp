#include "linux/system/TextColumns.h"

#include "propertylist/Unicode.h"

#include <locale.h>
#include <wchar.h>
#include <algorithm>

namespace linux {

using namespace propertylist;

namespace {

constexpr std::size_t kGap = 2;             // blanks between two columns
constexpr std::size_t kMeaningIndent = 30;  // where the second column of a help starts

// What must not begin a line, and what must not end one.
constexpr std::string_view kClosing = "、。，．：；？！）」』〉》】ーゝゞ々ぁぃぅぇぉっゃゅょァィゥェォッャュョ～";
constexpr std::string_view kOpening = "（「『〈《【";

// The widths of characters belong to a character encoding in the C library; what is written here is always UTF-8.
int widthOf(std::uint32_t codePoint) {
    static const locale_t sUTF8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = sUTF8 ? uselocale(sUTF8) : nullptr;
    const int width = wcwidth(static_cast<wchar_t>(codePoint));
    if (before) uselocale(before);
    return width < 0 ? 1 : width;
}

std::string_view takeCharacter(std::string_view& text) {
    const std::string_view whole = text;
    takeCodePoint(text);
    return whole.substr(0, whole.size() - text.size());
}

bool isIdeograph(std::string_view character) { return character.size() > 1 && columnsOf(character) == 2; }

bool mayBreakBetween(std::string_view before, std::string_view after) {
    if (before == " ") return true;
    if (after == " " || (!isIdeograph(before) && !isIdeograph(after))) return false;
    return kOpening.find(before) == std::string_view::npos && kClosing.find(after) == std::string_view::npos;
}

// The pieces that stay whole, each with the blank after it.
std::vector<std::string_view> unbreakablePieces(std::string_view text) {
    std::vector<std::string_view> pieces;
    std::string_view before;
    while (!text.empty()) {
        const std::string_view character = takeCharacter(text);
        if (pieces.empty() || mayBreakBetween(before, character))
            pieces.push_back(character);
        else
            pieces.back() = {pieces.back().data(), pieces.back().size() + character.size()};
        before = character;
    }
    return pieces;
}

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

std::size_t columnsOf(std::string_view text) {
    if (isASCII(text) || !isValidUTF8(text)) return text.size();
    std::size_t columns = 0;
    while (!text.empty()) columns += static_cast<std::size_t>(widthOf(takeCodePoint(text)));
    return columns;
}

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

std::string wrapped(std::string_view text, std::size_t indent) {
    std::string lines;
    std::size_t column = indent;
    for (std::string_view piece : unbreakablePieces(text)) {
        const std::string_view word = piece.substr(0, piece.find_last_not_of(' ') + 1);
        if (column > indent && column + columnsOf(word) > kHelpColumns) {
            removeTrailingBlanks(lines);
            lines.append("\n").append(indent, ' ');
            column = indent;
        }
        lines += piece;
        column += columnsOf(piece);
    }
    return lines;
}

std::string helpItem(std::string_view term, std::string_view meaning) {
    std::string text = padded("  " + std::string(term), kMeaningIndent);
    if (columnsOf(text) > kMeaningIndent || !text.ends_with("  ")) text.append("\n").append(kMeaningIndent, ' ');
    text += wrapped(meaning, kMeaningIndent);
    removeTrailingBlanks(text);
    return text + "\n";
}

}  // namespace linux
