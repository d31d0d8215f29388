#include "qt/texts/RichTextState.h"

#include <algorithm>
#include <iterator>

namespace qt {

namespace {

constexpr int kTwipsPerPoint = 20;
constexpr int kLargestLength = 1000;  // points
constexpr int kLargestGap = 72;       // points between paragraphs and beside them
constexpr int kLargestHalfPoints = 144, kMostBytesAfterUnicode = 16;

// A switch without a number is on, a measure without one is none.
bool isOn(std::optional<int> parameter) { return parameter != 0; }

template <bool RichTextStyle::*member>
void switchStyle(RichTextState& state, std::optional<int> parameter) {
    state.style.*member = isOn(parameter);
}

template <int RichTextParagraphStyle::*member>
void setLength(RichTextState& state, std::optional<int> parameter) {
    state.paragraph.*member = std::clamp(pointsFromTwips(parameter.value_or(0)), 0, kLargestGap);
}

void setFirstIndent(RichTextState& state, std::optional<int> parameter) {
    state.paragraph.firstIndent = std::clamp(pointsFromTwips(parameter.value_or(0)), -kLargestGap, kLargestGap);
}

template <RichTextAlignment alignment>
void align(RichTextState& state, std::optional<int>) {
    state.paragraph.alignment = alignment;
}

void setSize(RichTextState& state, std::optional<int> parameter) {
    int size = parameter.value_or(RichTextStyle::kUsualHalfPoints);
    if (size > 0) state.style.halfPoints = std::min(size, kLargestHalfPoints);
}

void setBytesAfterUnicode(RichTextState& state, std::optional<int> parameter) {
    state.bytesAfterUnicode = std::clamp(parameter.value_or(1), 0, kMostBytesAfterUnicode);
}

void endUnderline(RichTextState& state, std::optional<int>) { state.style.isUnderlined = false; }
void plain(RichTextState& state, std::optional<int>) {
    int link = state.style.link;
    state.style = {};
    state.style.link = link;
}
void plainParagraph(RichTextState& state, std::optional<int>) { state.paragraph = {}; }

void beginField(RichTextState& state, std::optional<int>) { state.fieldLink = -1; }
// A field that is no link may stand inside one.
void beginFieldResult(RichTextState& state, std::optional<int>) {
    if (state.fieldLink >= 0) state.style.link = state.fieldLink;
}

struct Format {
    std::string_view control;
    void (*apply)(RichTextState&, std::optional<int>);
};
using Style = RichTextStyle;
using Paragraph = RichTextParagraphStyle;
constexpr Format kFormats[] = {
    {"b", switchStyle<&Style::isBold>},
    {"i", switchStyle<&Style::isItalic>},
    {"ul", switchStyle<&Style::isUnderlined>},
    {"strike", switchStyle<&Style::isStruckOut>},
    {"ulnone", endUnderline},
    {"fs", setSize},
    {"plain", plain},
    {"pard", plainParagraph},
    {"ql", align<RichTextAlignment::Left>},
    {"qc", align<RichTextAlignment::Centre>},
    {"qr", align<RichTextAlignment::Right>},
    {"qj", align<RichTextAlignment::Justified>},
    {"sb", setLength<&Paragraph::spaceBefore>},
    {"sa", setLength<&Paragraph::spaceAfter>},
    {"li", setLength<&Paragraph::leftIndent>},
    {"ri", setLength<&Paragraph::rightIndent>},
    {"fi", setFirstIndent},
    {"uc", setBytesAfterUnicode},
    {"field", beginField},
    {"fldrslt", beginFieldResult},
};

struct Destination {
    std::string_view control;
    RichTextDestination destination;
};
constexpr Destination kDestinations[] = {
    {"colortbl", RichTextDestination::ColourTable}, {"fldinst", RichTextDestination::FieldInstruction},
    {"NeXTGraphic", RichTextDestination::Picture},  {"fonttbl", RichTextDestination::Nowhere},
    {"stylesheet", RichTextDestination::Nowhere},   {"info", RichTextDestination::Nowhere},
    {"pict", RichTextDestination::Nowhere},         {"object", RichTextDestination::Nowhere},
    {"header", RichTextDestination::Nowhere},       {"footer", RichTextDestination::Nowhere},
    {"headerl", RichTextDestination::Nowhere},      {"footerl", RichTextDestination::Nowhere},
    {"headerr", RichTextDestination::Nowhere},      {"footerr", RichTextDestination::Nowhere},
    {"headerf", RichTextDestination::Nowhere},      {"footerf", RichTextDestination::Nowhere},
    {"footnote", RichTextDestination::Nowhere},     {"listtable", RichTextDestination::Nowhere},
};

}  // namespace

int pointsFromTwips(int twips) { return std::clamp(twips / kTwipsPerPoint, -kLargestLength, kLargestLength); }

bool applyRichTextFormat(std::string_view control, std::optional<int> parameter, RichTextState& state) {
    auto found = std::ranges::find(kFormats, control, &Format::control);
    if (found == std::end(kFormats)) return false;
    found->apply(state, parameter);
    return true;
}

std::optional<RichTextDestination> richTextDestination(std::string_view control) {
    auto found = std::ranges::find(kDestinations, control, &Destination::control);
    return found == std::end(kDestinations) ? std::nullopt : std::optional(found->destination);
}

}  // namespace qt
