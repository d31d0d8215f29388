// Rich text (RTF) as paragraphs of runs, each run of one look. Knows no toolkit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qt {

enum class RichTextAlignment : std::uint8_t { Left, Centre, Right, Justified };

struct RichTextParagraphStyle {
    RichTextAlignment alignment = RichTextAlignment::Left;
    int spaceBefore = 0, spaceAfter = 0;                   // points, as all that follow
    int leftIndent = 0, rightIndent = 0, firstIndent = 0;  // the first line's beside the left one; may be negative
    bool operator==(const RichTextParagraphStyle&) const = default;
};

struct RichTextStyle {
    static constexpr int kUsualHalfPoints = 24;

    bool isBold = false, isItalic = false, isUnderlined = false, isStruckOut = false;
    int halfPoints = kUsualHalfPoints;
    std::optional<std::uint32_t> colour;  // 0xRRGGBB; nothing: the reader's own text colour
    int link = -1;                        // index among the document's links
    bool operator==(const RichTextStyle&) const = default;
};

// Well-formed UTF-16 without control characters but the tab; U+2028 is a line break. Or a picture, without text.
struct RichTextRun {
    std::u16string text;
    RichTextStyle style;
    std::string picture;        // a file's name as the text gives it, which may be anything
    int width = 0, height = 0;  // of the picture, in points; 0: its own size
};

struct RichTextParagraph {
    // A paragraph of more runs is broken into several: toolkits lay one out in the square of its runs.
    static constexpr std::size_t kMostRuns = 1000;

    RichTextParagraphStyle style;
    std::vector<RichTextRun> runs;
};

struct RichTextDocument {
    std::vector<RichTextParagraph> paragraphs;
    std::vector<std::string> links;  // addresses, each http, https or mailto
};

// Nothing when the bytes do not begin as rich text does. Text that ends early or has groups that do not match is read
// as far as it goes; unknown controls are skipped, as the format asks of its readers. Takes time and memory in
// proportion to the bytes, however they are nested.
std::optional<RichTextDocument> readRichTextRuns(std::string_view rtf);

}  // namespace qt
