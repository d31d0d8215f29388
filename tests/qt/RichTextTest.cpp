#include "propertylist/Unicode.h"
#include "qt/texts/RichTextRuns.h"
#include "tests/support/Check.h"

#include <bit>

using namespace platform;
using namespace propertylist;
using namespace qt;

namespace {

std::string utf8(const std::u16string& text) {
    auto order = std::endian::native == std::endian::little ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
    return utf8FromUTF16({reinterpret_cast<const char*>(text.data()), text.size() * 2}, order).value_or("(not UTF-16)");
}

// What is not the usual way, in front of the text that it holds for: «b 36 #ff0000 https://x»text
std::string described(const RichTextRun& run, const RichTextDocument& document) {
    std::ostringstream marks;
    const RichTextStyle& style = run.style;
    if (style.isBold) marks << " b";
    if (style.isItalic) marks << " i";
    if (style.isUnderlined) marks << " u";
    if (style.isStruckOut) marks << " s";
    if (style.halfPoints != 24) marks << ' ' << style.halfPoints;
    if (style.colour) marks << " #" << std::hex << *style.colour << std::dec;
    if (style.link >= 0) marks << ' ' << document.links[static_cast<std::size_t>(style.link)];
    if (!run.picture.empty()) marks << " picture " << run.picture << ' ' << run.width << 'x' << run.height;
    std::string text = marks.str();
    return (text.empty() ? "" : "«" + text.substr(1) + "»") + utf8(run.text);
}

std::string described(const RichTextParagraphStyle& style) {
    static constexpr const char* kAlignments[] = {"", " centre", " right", " justified"};
    std::ostringstream marks;
    marks << kAlignments[static_cast<int>(style.alignment)];
    if (style.spaceBefore || style.spaceAfter) marks << " space " << style.spaceBefore << ',' << style.spaceAfter;
    if (style.leftIndent || style.rightIndent || style.firstIndent)
        marks << " indents " << style.leftIndent << ',' << style.rightIndent << ',' << style.firstIndent;
    std::string text = marks.str();
    return text.empty() ? "" : "[" + text.substr(1) + "]";
}

std::string read(const std::string& rtf) {
    auto document = readRichTextRuns(rtf);
    if (!document) return "(refused)";
    std::string text;
    for (const RichTextParagraph& paragraph : document->paragraphs) {
        if (&paragraph != document->paragraphs.data()) text += '\n';
        text += described(paragraph.style);
        for (const RichTextRun& run : paragraph.runs) text += described(run, *document);
    }
    return text;
}

}  // namespace

TEST(RichTextInEveryForm) {
    const auto cases = check::casesIn(TEST_DATA "/rich-text.txt");
    for (const auto& c : cases) {
        CONTEXT(c.label);
        CHECK_EQ(read(c.text), c.expected);
    }
    CHECK(cases.size() > 30);
    CHECK_EQ(read("{\\rtf1" + std::string(200000, '{') + "x" + std::string(200000, '}') + "y"), "xy");
}
