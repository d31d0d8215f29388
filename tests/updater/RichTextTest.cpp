#include "platform/qt/RichText.h"
#include "tests/qt/QtTest.h"

#include <QTextBlock>
#include <QTextDocument>

using platform::qt::readRichText;

TEST(RichTextInEveryForm) {
    useApplication();
    struct Case {
        std::string rtf;
        const char* html;  // words between marks: *bold* /italic/ _underlined_
    };
    const Case cases[] = {
        {R"({\rtf1 plain})", "plain"},
        {R"({\rtf1{\b bold}{\i it}\ul u\ulnone\b0  p})", "*bold*/it/_u_ p"},
        {R"({\rtf1\b a{\b0 b}c\plain d})", "*a*b*c*d"},
        {"{\\rtf1 one\\par\ntwo\\\nthree\\line four}", "one\ntwo\nthree\u2028four"},
        {R"({\rtf1\ansi \'e4\'80\\\{\}\~\_\bullet\emdash})", "ä€\\{}\u00a0\u2011•—"},
        {R"({\rtf1\mac \'8a\'d2\'CA\'zz})", "ä“\u00a0?zz"},
        {R"({\rtf1\uc1 \u8220?x\u-10179?\u-8704?{\uc0\u228}\uc2\u228??y})", "“x😀ääy"},
        {R"({\rtf1{\fonttbl{\f0 Sans;}}{\*\unknown{\b deep} text}{\info{\title T}}{\field{\*\fldinst{HYPERLINK "x"}}{\fldrslt link}}})",
         "link"},
        {"{\\rtf1 a\\bin3 {}\\b}", "ab"},
        {"{\\rtf1 early {\\b end", "early *end*"},
        {"{\\rtf1 a}}}} b {", "a b "},
        {R"({\rtf1\fs99999999999999999999 a\bin99999999999 b\u99999999999 c\')", "ab??"},
    };
    for (const Case& c : cases) {
        CONTEXT(c.rtf);
        QTextDocument document;
        CHECK(readRichText(c.rtf, document));
        QString text;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            if (block != document.begin()) text += QLatin1Char('\n');
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                QTextCharFormat format = it.fragment().charFormat();
                QString mark = QLatin1String(format.fontWeight() > QFont::Normal ? "*"
                                             : format.fontItalic()               ? "/"
                                             : format.fontUnderline()            ? "_"
                                                                                 : "");
                text += mark + it.fragment().text() + mark;
            }
        }
        CHECK_EQ(text.toStdString(), c.html);
    }
    QTextDocument kept;
    kept.setPlainText(QStringLiteral("kept"));
    for (const char* other : {"", "text", "{\\rt", "{\\b x}"}) CHECK(!readRichText(other, kept));
    CHECK_EQ(kept.toPlainText().toStdString(), "kept");
    CHECK(readRichText(std::string("{\\rtf1") + std::string(200000, '{') + "x", kept));
    CHECK_EQ(kept.toPlainText().toStdString(), "x");
}
