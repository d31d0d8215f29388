#include "platform/qt/RichText.h"

#include "platform/qt/RichTextTokens.h"

#include <QTextBlockFormat>
#include <QTextCursor>

#include <array>
#include <map>
#include <vector>

namespace platform::qt {
namespace {

constexpr double kUsualHalfPoints = 24;

// Characters of the bytes from 0x80 on.
constexpr std::u16string_view kMacRoman =
    u"\u00C4\u00C5\u00C7\u00C9\u00D1\u00D6\u00DC\u00E1\u00E0\u00E2\u00E4\u00E3\u00E5\u00E7\u00E9\u00E8"
    u"\u00EA\u00EB\u00ED\u00EC\u00EE\u00EF\u00F1\u00F3\u00F2\u00F4\u00F6\u00F5\u00FA\u00F9\u00FB\u00FC"
    u"\u2020\u00B0\u00A2\u00A3\u00A7\u2022\u00B6\u00DF\u00AE\u00A9\u2122\u00B4\u00A8\u2260\u00C6\u00D8"
    u"\u221E\u00B1\u2264\u2265\u00A5\u00B5\u2202\u2211\u220F\u03C0\u222B\u00AA\u00BA\u03A9\u00E6\u00F8"
    u"\u00BF\u00A1\u00AC\u221A\u0192\u2248\u2206\u00AB\u00BB\u2026\u00A0\u00C0\u00C3\u00D5\u0152\u0153"
    u"\u2013\u2014\u201C\u201D\u2018\u2019\u00F7\u25CA\u00FF\u0178\u2044\u20AC\u2039\u203A\uFB01\uFB02"
    u"\u2021\u00B7\u201A\u201E\u2030\u00C2\u00CA\u00C1\u00CB\u00C8\u00CD\u00CE\u00CF\u00CC\u00D3\u00D4"
    u"\uF8FF\u00D2\u00DA\u00DB\u00D9\u0131\u02C6\u02DC\u00AF\u02D8\u02D9\u02DA\u00B8\u02DD\u02DB\u02C7";
constexpr std::u16string_view kWindows =  // to 0x9F; above, a byte is its own code point
    u"\u20AC\uFFFD\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\uFFFD\u017D\uFFFD"
    u"\uFFFD\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\uFFFD\u017E\u0178";

QChar character(unsigned char byte, bool isMac) {
    if (byte < 0x80) return QChar(byte);
    std::size_t index = byte - 0x80U;
    if (isMac) return QChar(kMacRoman[index]);
    return index < kWindows.size() ? QChar(kWindows[index]) : QChar(byte);
}

// Groups whose text is none of the document's.
bool isForeignDestination(std::string_view control) {
    static constexpr std::array<std::string_view, 12> kForeign{"fonttbl", "colortbl", "stylesheet", "info",
                                                               "pict",    "object",   "header",     "footer",
                                                               "fldinst", "footnote", "listtable",  "*"};
    return std::find(kForeign.begin(), kForeign.end(), control) != kForeign.end();
}

char16_t symbol(std::string_view control) {
    static const std::map<std::string_view, char16_t> kSymbols{{"tab", u'\t'},
                                                               {"line", u'\u2028'},
                                                               {"emdash", u'\u2014'},
                                                               {"endash", u'\u2013'},
                                                               {"lquote", u'\u2018'},
                                                               {"rquote", u'\u2019'},
                                                               {"ldblquote", u'\u201C'},
                                                               {"rdblquote", u'\u201D'},
                                                               {"bullet", u'\u2022'},
                                                               {"~", u'\u00A0'},
                                                               {"_", u'\u2011'},
                                                               {"-", u'\u00AD'},
                                                               {"\\", u'\\'},
                                                               {"{", u'{'},
                                                               {"}", u'}'}};
    auto found = kSymbols.find(control);
    return found == kSymbols.end() ? u'\0' : found->second;
}

struct State {
    bool bold = false, italic = false, underline = false, isForeign = false;
    double halfPoints = kUsualHalfPoints;
    int bytesAfterUnicode = 1;  // the stand-in for readers that know no Unicode
    Qt::Alignment alignment = Qt::AlignLeft;
};

class Reader {
public:
    Reader(std::string_view rtf, QTextDocument& document)
        : tokens_(rtf), cursor_(&document), usualSize_(document.defaultFont().pointSizeF()) {
        cursor_.beginEditBlock();
        cursor_.select(QTextCursor::Document);
        cursor_.removeSelectedText();
        cursor_.setBlockFormat({});
    }

    void read() {
        using Kind = RichTextToken::Kind;
        for (RichTextToken token = tokens_.next(); token.kind != Kind::End; token = tokens_.next()) {
            if (token.kind == Kind::OpenGroup) groups_.push_back(state_);
            if (token.kind == Kind::CloseGroup) closeGroup();
            if (token.kind == Kind::Byte) addByte(token.byte);
            if (token.kind == Kind::Control) perform(token);
        }
        flush();
        cursor_.endEditBlock();
    }

private:
    void closeGroup() {
        flush();
        if (groups_.empty()) return;
        state_ = groups_.back();
        groups_.pop_back();
        toSkip_ = 0;
    }

    void perform(const RichTextToken& token) {
        std::string_view name = token.control;
        if (name == "'") return addByte(static_cast<unsigned char>(token.parameter.value_or('?')));
        if (name == "bin") return tokens_.skip(static_cast<std::size_t>(std::max(token.parameter.value_or(0), 0)));
        if (isForeignDestination(name)) {
            state_.isForeign = true;
        } else if (name == "u") {
            addUnicode(token.parameter.value_or('?'));
        } else if (name == "par" || name == "\n" || name == "\r") {
            endParagraph();
        } else if (char16_t c = symbol(name)) {
            add(QChar(c));
        } else {
            flush();
            format(name, token.parameter);
        }
    }

    void format(std::string_view name, std::optional<int> parameter) {
        bool isOn = parameter != 0;
        if (name == "b") state_.bold = isOn;
        if (name == "i") state_.italic = isOn;
        if (name == "ul") state_.underline = isOn;
        if (name == "ulnone") state_.underline = false;
        if (name == "fs" && parameter > 0) state_.halfPoints = std::min(*parameter, 400);
        if (name == "uc" && parameter >= 0) state_.bytesAfterUnicode = std::min(*parameter, 16);
        if (name == "mac") isMac_ = true;
        if (name == "plain")
            state_.bold = state_.italic = state_.underline = false, state_.halfPoints = kUsualHalfPoints;
        if (name == "qc") state_.alignment = Qt::AlignHCenter;
        if (name == "qr") state_.alignment = Qt::AlignRight;
        if (name == "qj") state_.alignment = Qt::AlignJustify;
        if (name == "ql" || name == "pard") state_.alignment = Qt::AlignLeft;
    }

    void addByte(unsigned char byte) {
        if (toSkip_ > 0)
            --toSkip_;
        else
            add(character(byte, isMac_));
    }

    // A UTF-16 unit as a signed number. A lone half of a pair stays as it is: Qt shows it as unknown.
    void addUnicode(int unit) {
        add(QChar(static_cast<char16_t>(unit)));
        toSkip_ = state_.bytesAfterUnicode;
    }

    void add(QChar c) {
        if (!state_.isForeign) text_ += c;
    }

    void flush() {
        if (text_.isEmpty()) return;
        QTextCharFormat format;
        format.setFontWeight(state_.bold ? QFont::Bold : QFont::Normal);
        format.setFontItalic(state_.italic);
        format.setFontUnderline(state_.underline);
        format.setFontPointSize(usualSize_ * state_.halfPoints / kUsualHalfPoints);
        setAlignment();
        cursor_.insertText(text_, format);
        text_.clear();
    }

    void setAlignment() {
        QTextBlockFormat format;
        format.setAlignment(state_.alignment);
        cursor_.setBlockFormat(format);
    }

    void endParagraph() {
        if (state_.isForeign) return;
        flush();
        cursor_.insertBlock();
    }

    RichTextTokens tokens_;
    QTextCursor cursor_;
    const double usualSize_;
    State state_;
    std::vector<State> groups_;
    QString text_;  // of one format
    int toSkip_ = 0;
    bool isMac_ = false;
};

}  // namespace

bool readRichText(std::string_view rtf, QTextDocument& document) {
    if (!rtf.starts_with("{\\rtf")) return false;
    Reader(rtf, document).read();
    return true;
}

}  // namespace platform::qt
