#include "platform/Unicode.h"
#include "platform/qt/RichTextRuns.h"
#include "tests/support/Check.h"

#include <bit>

using namespace platform;
using namespace platform::qt;

namespace {

std::string utf8(const std::u16string& text) {
    auto order = std::endian::native == std::endian::little ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
    return utf8FromUTF16({reinterpret_cast<const char*>(text.data()), text.size() * 2}, order).value_or("(not UTF-16)");
}

// What is not the usual way, in front of the text that it holds for: <b 36 #ff0000 https://x>text
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
    return (text.empty() ? "" : "<" + text.substr(1) + ">") + utf8(run.text);
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

std::string link(const std::string& instruction) {
    return R"({\rtf1{\field{\*\fldinst )" + instruction + R"(}{\fldrslt there}}.})";
}

}  // namespace

TEST(RichTextInEveryForm) {
    struct Case {
        std::string rtf;
        const char* runs;
    };
    const Case cases[] = {
        {R"({\rtf1 plain})", "plain"},
        {R"({\rtf1{\b bold}{\i it}\ul u\ulnone\b0  p{\strike gone}})", "<b>bold<i>it<u>u p<s>gone"},
        {R"({\rtf1\b a{\b0 b}c\plain d\fs36 e\fs0 f\fs99999 g})", "<b>ab<b>cd<36>ef<144>g"},
        {"{\\rtf1 one\\par\ntwo\\\nthree\\line four\\par}", "one\ntwo\nthree\u2028four"},
        {R"({\rtf1\qc\sb240\sa-40 a\par\pard\li400\ri20\fi-400 b\par\qr\li99999999 c\par\pard\qj d})",
         "[centre space 12,0]a\n[indents 20,1,-20]b\n[right indents 72,1,-20]c\n[justified]d"},
        {R"({\rtf1{\colortbl;\red255\green0\blue0;\blue300;;}\cf1 a\cf0 b\cf2 c\cf3 d\cf9 e\cf-1 f})",
         "<#ff0000>ab<#ff>cdef"},
        // Characters.
        {R"({\rtf1\ansi \'e4\'80\\\{\}\~\_\bullet\emdash})", "ä€\\{}\u00a0\u2011•—"},
        {"{\\rtf1\\mac \\'8a\\'d2\\'CA\\'zz\xa5}", "ä“\u00a0?zz•"},
        {R"({\rtf1\ansicpg10000 \'8a\ansicpg1252 \'8a})", "äŠ"},
        {R"({\rtf1\uc1 \u8220?x\u-10179?\u-8704?{\uc0\u228}\uc2\u228??y\u228\'e4\emdash z})", "“x😀ääyäz"},
        {R"({\rtf1 \u-10179?a\u-8704?\b\u-10179?\b0\u-8704?\u0?\u65535?\u70000?\u8233?b\u7?})",
         "\uFFFDa\uFFFD<b>\uFFFD\uFFFD\uFFFD\uFFFD\u2028b"},
        // What is beside the text.
        {R"({\rtf1{\fonttbl{\f0 Sans;}}{\*\unknown{\b deep} text\par}{\info{\title T}}\unknown text})", "text"},
        {link(R"(HYPERLINK "https://a.example/?b=c")"), "<https://a.example/?b=c>there."},
        {link(R"({\b hyperlink\tab  MailTo:a@b.example \\o "tip"})"), "<MailTo:a@b.example>there."},
        {link(R"(HYPERLINK "file:///etc/passwd")"), "there."},
        {link(R"(HYPERLINK "javascript:x")"), "there."},
        {link(R"(HYPERLINK "https://a b")"), "there."},
        {link(R"(HYPERLINK \\l "here")"), "there."},
        {link("HYPERLINK"), "there."},
        {link(R"(HYPERLINK "http://x"}{\fldrslt{\field{\*\fldinst PAGE}{\fldrslt 1}}})"), "<http://x>1there."},
        {"{\\rtf1 a{{\\NeXTGraphic My logo.png \\width1280 \\height640 \\noorient}\xac}b}",
         "a<picture My logo.png 64x32>b"},
        {R"({\rtf1{{\NeXTGraphic ../x.png \width-99999999}\'ac}{{\NeXTGraphic }\'ac}{\pict 89504e}c})",
         "<picture ../x.png 1000x0>c"},
        // Broken.
        {"{\\rtf1 a\\bin3 {}\\b}", "ab"},
        {"{\\rtf1 early {\\b end", "early <b>end"},
        {"{\\rtf1 a}}}} b {", "a b "},
        {R"({\rtf1\fs99999999999999999999 a\bin99999999999 b\bin-5 c\u99999999999 d\')", "abc\uFFFD?"},
        {R"({\rtf1 a\bin2147483647 b})", "a"},
        {"{\\rtf1" + std::string(200000, '{') + "x" + std::string(200000, '}') + "y", "xy"},
        {"", "(refused)"},
        {"text", "(refused)"},
        {"{\\rt", "(refused)"},
        {"{\\b x}", "(refused)"},
    };
    for (const Case& c : cases) {
        CONTEXT(c.rtf.substr(0, 200));
        CHECK_EQ(read(c.rtf), c.runs);
    }
}
