#include "qt/texts/RichText.h"

#include "qt/texts/RichTextPictures.h"
#include "qt/texts/RichTextRuns.h"
#include "qt/texts/Text.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QPalette>
#include <QTextBlockFormat>
#include <QTextCursor>

#include <algorithm>
#include <utility>

namespace qt {

namespace {

constexpr double kUsualPoints = RichTextStyle::kUsualHalfPoints / 2.0;

class Writer {
public:
    Writer(const RichTextDocument& text, const QString& folder, QTextDocument& document)
        : text_(text),
          pictures_(folder, document),
          cursor_(&document),
          usualSize_(QFontInfo(document.defaultFont()).pointSizeF()),
          pixelsPerPoint_(QFontInfo(document.defaultFont()).pixelSize() / kUsualPoints) {}

    void write() {
        cursor_.beginEditBlock();
        cursor_.select(QTextCursor::Document);
        cursor_.removeSelectedText();
        cursor_.setBlockFormat({});
        bool isFirst = true;
        for (const RichTextParagraph& paragraph : text_.paragraphs) {
            if (!std::exchange(isFirst, false)) cursor_.insertBlock();
            cursor_.setBlockFormat(blockFormat(paragraph.style));
            for (const RichTextRun& run : paragraph.runs) write(run);
        }
        cursor_.endEditBlock();
    }

private:
    void write(const RichTextRun& run) {
        if (run.picture.empty()) {
            QString text = QString::fromUtf16(run.text.data(), static_cast<int>(run.text.size()));
            cursor_.insertText(text, charFormat(run.style));
        } else if (auto format = pictures_.format(run)) {
            cursor_.insertText(QString(QChar::ObjectReplacementCharacter), *format);
        }
    }

    QTextBlockFormat blockFormat(const RichTextParagraphStyle& style) const {
        static constexpr Qt::AlignmentFlag kAlignments[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight,
                                                            Qt::AlignJustify};
        QTextBlockFormat format;
        format.setAlignment(kAlignments[static_cast<std::size_t>(style.alignment)]);
        format.setTopMargin(style.spaceBefore * pixelsPerPoint_);
        format.setBottomMargin(style.spaceAfter * pixelsPerPoint_);
        format.setLeftMargin(style.leftIndent * pixelsPerPoint_);
        format.setRightMargin(style.rightIndent * pixelsPerPoint_);
        format.setTextIndent(std::max(style.firstIndent, -style.leftIndent) * pixelsPerPoint_);
        return format;
    }

    QTextCharFormat charFormat(const RichTextStyle& style) const {
        QTextCharFormat format;
        format.setFontWeight(style.isBold ? QFont::Bold : QFont::Normal);
        format.setFontItalic(style.isItalic);
        format.setFontUnderline(style.isUnderlined);
        format.setFontStrikeOut(style.isStruckOut);
        format.setFontPointSize(usualSize_ * style.halfPoints / RichTextStyle::kUsualHalfPoints);
        if (style.link >= 0) setLink(format, toQString(text_.links[static_cast<std::size_t>(style.link)]));
        if (style.colour) format.setForeground(QColor::fromRgb(*style.colour));
        return format;
    }

    // A reader sees where the link leads before it is followed.
    static void setLink(QTextCharFormat& format, const QString& address) {
        format.setAnchor(true);
        format.setAnchorHref(address);
        format.setToolTip(address);
        format.setFontUnderline(true);
        format.setForeground(QGuiApplication::palette().link());
    }

    const RichTextDocument& text_;
    RichTextPictures pictures_;
    QTextCursor cursor_;
    const double usualSize_, pixelsPerPoint_;
};

}  // namespace

bool readRichText(std::string_view rtf, const QString& folder, QTextDocument& document) {
    auto text = readRichTextRuns(rtf);
    if (!text) return false;
    Writer(*text, folder, document).write();
    return true;
}

}  // namespace qt
