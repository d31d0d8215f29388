#include "qt/texts/ForeignText.h"

#include <QStyle>
#include <QTextBoundaryFinder>
#include <QWidget>

#include <algorithm>

namespace qt {

namespace {

constexpr QChar kEllipsis(0x2026);
constexpr QChar kZeroWidthSpace(0x200B);
constexpr int kLongestUnbroken = 30;  // characters of a word

}  // namespace

QString shortened(const QString& text, int most) {
    if (text.size() <= most) return text;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(most);
    const auto end = finder.isAtBoundary() ? most : finder.toPreviousBoundary();
    return text.left(std::max<decltype(end)>(end, 0)) + kEllipsis;
}

QString asOneLine(QString text) {
    auto turnsRound = [](QChar c) {
        const ushort code = c.unicode();
        return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
               (code >= 0x2066 && code <= 0x2069);
    };
    text.truncate(std::remove_if(text.begin(), text.end(), turnsRound) - text.begin());
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = QLatin1Char(' ');
    return text;
}

QString breakable(const QString& text) {
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    QString result;
    int unbroken = 0;
    for (auto start = characters.position(), end = characters.toNextBoundary(); end > start;
         start = end, end = characters.toNextBoundary()) {
        unbroken = text.at(start).isSpace() ? 0 : unbroken + 1;
        if (unbroken > kLongestUnbroken) {
            result += kZeroWidthSpace;
            unbroken = 1;
        }
        result += text.mid(start, end - start);
    }
    return result;
}

int breakLines(QTextLayout& layout, const QString& text, const QWidget& shownBy, int width, int most) {
    const bool isRightToLeft = text.isRightToLeft();
    QTextOption option(QStyle::visualAlignment(shownBy.layoutDirection(), Qt::AlignLeading) | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    QString lines = text;
    layout.setText(lines.replace(QLatin1Char('\n'), QChar::LineSeparator));
    layout.setFont(shownBy.font());
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (layout.lineCount() == most) break;
    }
    layout.endLayout();
    return layout.lineCount();
}

}  // namespace qt
