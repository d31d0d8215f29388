#include "qt/controls/CellDelegate.h"

#include "qt/controls/CellModel.h"
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

QColor textColor(const QStyleOptionViewItem& option, bool grey) {
    QPalette::ColorGroup group = colorGroup(option);
    bool selected = option.state & QStyle::State_Selected;
    if (!selected && grey && group != QPalette::Disabled) return option.palette.color(group, QPalette::PlaceholderText);
    QColor color = option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    if (selected && grey) color.setAlphaF(0.8);
    return color;
}

void drawImage(QPainter* painter, const QStyleOptionViewItem& option, const QIcon& icon) {
    constexpr int kExtent = CellDelegate::kIconExtent;
    QRect square(0, 0, kExtent, kExtent);
    square.moveCenter(option.rect.center());
    bool enabled = option.state & QStyle::State_Enabled;
    icon.paint(painter, square, Qt::AlignCenter, enabled ? QIcon::Normal : QIcon::Disabled);
}

void drawLines(QPainter* painter, const QStyleOptionViewItem& option, const std::vector<AttributedLine>& lines) {
    QFont small = smallFont(option.font);
    int height = 0;
    for (const AttributedLine& line : lines) height += QFontMetrics(line.small ? small : option.font).lineSpacing();
    QRect area = option.rect.adjusted(CellDelegate::kMargin, 0, -CellDelegate::kMargin, 0);
    int y = area.top() + (area.height() - height) / 2;
    for (const AttributedLine& line : lines) {
        QFontMetrics metrics(line.small ? small : option.font);
        QRect box(area.left(), y, area.width(), metrics.lineSpacing());
        painter->setFont(line.small ? small : option.font);
        painter->setPen(textColor(option, line.small));
        auto alignment = QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter);
        QString text = metrics.elidedText(toQString(line.text), Qt::ElideMiddle, box.width());
        // Scripts that the font borrows from another may stand higher than its own lines.
        painter->drawText(box, static_cast<int>(alignment) | Qt::TextSingleLine | Qt::TextDontClip, text);
        y += metrics.lineSpacing();
    }
}

}  // namespace

int CellDelegate::rowHeight(const QFont& font) {
    int text = QFontMetrics(font).lineSpacing() + QFontMetrics(smallFont(font)).lineSpacing();
    return std::max(kIconExtent, text) + 2 * kMargin;
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    CellValue value = model_.cell(index);
    painter->save();
    const QtImage* image = QtImage::of(value.image);
    if (image && (image->isMade() || !postponesImages_)) drawImage(painter, option, image->icon());
    drawLines(painter, option, value.lines);
    painter->restore();
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {kIconExtent + 2 * kMargin, rowHeight(option.font)};
}

}  // namespace qt
