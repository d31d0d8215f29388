// What holds within a group of rich text, and the controls that change its look.
#pragma once

#include "qt/texts/RichTextRuns.h"

#include <optional>
#include <string_view>

namespace qt {

// Where the characters of a group go.
enum class RichTextDestination : std::uint8_t { Document, Nowhere, ColourTable, FieldInstruction, Picture };

struct RichTextState {
    RichTextStyle style;
    RichTextParagraphStyle paragraph;
    RichTextDestination destination = RichTextDestination::Document;
    int bytesAfterUnicode = 1;  // the stand-in for readers that know no Unicode
    int fieldLink = -1;         // where the result of the field at hand leads
};

// False when the control says nothing about looks.
bool applyRichTextFormat(std::string_view control, std::optional<int> parameter, RichTextState& state);
// Nothing for a control that begins no destination.
std::optional<RichTextDestination> richTextDestination(std::string_view control);

// Twentieths of a point, kept within what a page can hold.
int pointsFromTwips(int twips);

}  // namespace qt
