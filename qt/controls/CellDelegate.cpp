#include "qt/controls/CellDelegate.h"

#include "qt/controls/CellModel.h"
#include "qt/controls/Contrast.h"
#include "qt/images/QtImage.h"
#include "qt/texts/Utf8.h"

#include <QApplication>
#include <QPainter>

namespace qt {

using namespace platform;

namespace {

QFont smallFont(QFont font) {
    constexpr double kRatio = 0.85, kSmallest = 7;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(std::max(kSmallest, font.pointSizeF() * kRatio));
    else
        font.setPixelSize(std::max(9, static_cast<int>(font.pixelSize() * kRatio)));
    return font;
}

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem& option) {
    if (!(option.state & QStyle::State_Enabled)) return QPalette::Disabled;
    return option.state & QStyle::State_Active ? QPalette::Normal : QPalette::Inactive;
}

}  // namespace

// Styles take what lies behind a selected row from here.
QStyleOptionViewItem withReadableSelection(const QStyleOptionViewItem& option) {
    QStyleOptionViewItem readable(option);
    const QPalette::ColorGroup group = colorGroup(option);
    const QColor text = option.palette.color(group, QPalette::HighlightedText);
    const QColor farthest = text.lightness() < 128 ? Qt::white : Qt::black;
    readable.palette.setColor(group, QPalette::Highlight,
                              readableOn(text, option.palette.color(group, QPalette::Highlight), farthest));
    return readable;
}

namespace {

QColor textColor(const QStyleOptionViewItem& option, bool grey) {
    const QPalette::ColorGroup group = colorGroup(option);
    const bool isSelected = option.state & QStyle::State_Selected;
    const QColor text = option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    if (!grey || group == QPalette::Disabled) return text;
    QColor paler = isSelected ? text : option.palette.color(group, QPalette::PlaceholderText);
    if (isSelected) paler.setAlphaF(0.8F);
    return readableOn(option.palette.color(group, isSelected ? QPalette::Highlight : QPalette::Base), paler, text);
}

void drawImage(QPainter* painter, const QStyleOptionViewItem& option, const QIcon& icon, bool isPale) {
    constexpr int kExtent = CellDelegate::kIconExtent;
    QRect square(0, 0, kExtent, kExtent);
    square.moveCenter(option.rect.center());
    bool enabled = option.state & QStyle::State_Enabled;
    icon.paint(painter, square, Qt::AlignCenter, enabled && !isPale ? QIcon::Normal : QIcon::Disabled);
}

// Paths and expressions run from left to right whatever surrounds them, and whichever letters are in them; a name runs
// as its own letters do.
int ownDirection(const AttributedLine& line) {
    return !line.small && toQString(line.text).isRightToLeft() ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight;
}

// Points.
constexpr int kMarkInset = 5, kMarkGap = 4;

// Each word in a frame, at the far end of the line, as many as there is room for beside the name, and the first in any
// case. The width that they take.
int drawMarks(QPainter* painter, const QStyleOptionViewItem& option, QRect line, const CellValue& value,
              int nameWidth) {
    painter->setFont(smallFont(option.font));
    painter->setPen(textColor(option, true));
    QStringList words;
    int taken = 0;
    for (const std::string& mark : value.marks) {
        const QString word = toQString(mark);
        const int width = painter->fontMetrics().horizontalAdvance(word) + 2 * kMarkInset + kMarkGap;
        if (taken + width > (words.isEmpty() ? 2 * line.width() / 3 : line.width() - nameWidth)) break;
        words << word;
        taken += width;
    }
    QRect frame(line.right() - taken + 1, line.top() + 1, 0, line.height() - 2);
    for (const QString& word : words) {
        frame.setLeft(frame.right() + 1 + kMarkGap);
        frame.setWidth(painter->fontMetrics().horizontalAdvance(word) + 2 * kMarkInset);
        const QRect shown = QStyle::visualRect(option.direction, line, frame);
        painter->drawRoundedRect(QRectF(shown).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        painter->drawText(shown, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, word);
    }
    return taken;
}

}  // namespace

void drawLines(QPainter* painter, const QStyleOptionViewItem& option, const CellValue& value) {
    const std::vector<AttributedLine>& lines = value.lines;
    QFont small = smallFont(option.font);
    int height = 0;
    for (const AttributedLine& line : lines) height += QFontMetrics(line.small ? small : option.font).lineSpacing();
    QRect area = option.rect.adjusted(CellDelegate::kMargin, 0, -CellDelegate::kMargin, 0);
    int y = area.top() + (area.height() - height) / 2;
    const int alignment =
        QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter) | Qt::AlignAbsolute;
    for (const AttributedLine& line : lines) {
        QFontMetrics metrics(line.small ? small : option.font);
        QRect box(area.left(), y, area.width(), metrics.lineSpacing());
        if (&line == lines.data() && !value.marks.empty()) {
            const int name = metrics.horizontalAdvance(toQString(line.text));
            const int width = drawMarks(painter, option, box, value, name);
            box = QStyle::visualRect(option.direction, box, box.adjusted(0, 0, -width, 0));
        }
        painter->setFont(line.small ? small : option.font);
        painter->setPen(textColor(option, line.small));
        QString text = metrics.elidedText(toQString(line.text), Qt::ElideMiddle, box.width());
        // Scripts that the font borrows from another may stand higher than its own lines.
        painter->drawText(box, alignment | ownDirection(line) | Qt::TextSingleLine | Qt::TextDontClip, text);
        y += metrics.lineSpacing();
    }
}

int CellDelegate::rowHeight(const QFont& font) {
    int text = QFontMetrics(font).lineSpacing() + QFontMetrics(smallFont(font)).lineSpacing();
    return std::max(kIconExtent, text) + 2 * kMargin;
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    const QStyleOptionViewItem shown = withReadableSelection(option);
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &shown, painter, option.widget);
    CellValue value = model_.cell(index);
    painter->save();
    const QtImage* image = QtImage::of(value.image);
    if (image && (image->isMade() || !postponesImages_)) drawImage(painter, shown, image->icon(), value.isPale);
    drawLines(painter, shown, value);
    painter->restore();
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {kIconExtent + 2 * kMargin, rowHeight(option.font)};
}

}  // namespace qt
