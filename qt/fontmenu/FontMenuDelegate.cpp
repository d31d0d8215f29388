#include "qt/fontmenu/FontMenuDelegate.h"

#include "qt/controls/CellDelegate.h"
#include "qt/controls/Contrast.h"
#include "qt/fontmenu/FontMenuSamples.h"
#include "qt/texts/ForeignText.h"
#include "qt/texts/Utf8.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>

namespace qt {

using namespace platform;

namespace {

using Kind = FontMenuItem::Kind;
using Drawing = FontMenuItem::Drawing;

// Points.
constexpr int kGap = 5, kInset = 3;
constexpr double kWidestName = 600;
constexpr const char* kBadges[kFontKinds] = {"", "TT", "OT", "VF", "T1", "BM"};

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem& option) {
    if (!(option.state & QStyle::State_Enabled)) return QPalette::Disabled;
    return option.state & QStyle::State_Active ? QPalette::Normal : QPalette::Inactive;
}

QColor textColor(const QStyleOptionViewItem& option, bool isPale) {
    const QPalette::ColorGroup group = colorGroup(option);
    const bool isSelected = option.state & QStyle::State_Selected;
    const QColor text = option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    if (!isPale || isSelected) return text;
    return readableOn(option.palette.color(group, QPalette::Base),
                      option.palette.color(group, QPalette::PlaceholderText), text);
}

QFont sized(QFont font, int points) {
    if (points > 0) font.setPointSize(std::min(points, FontMenuDelegate::kLargestSize));
    return font;
}

// What is left of a line, from its beginning on, which is on the right where writing goes from right to left.
struct Line {
    QPainter& painter;
    QRect left;
    Qt::LayoutDirection direction;

    QRect take(int width) {
        const QRect taken = QStyle::visualRect(direction, left, QRect(left.left(), left.top(), width, left.height()));
        direction == Qt::RightToLeft ? left.setRight(left.right() - width) : left.setLeft(left.left() + width);
        return taken;
    }
    // At the far end.
    QRect takeLast(int width) {
        direction = direction == Qt::RightToLeft ? Qt::LeftToRight : Qt::RightToLeft;
        const QRect taken = take(width);
        direction = direction == Qt::RightToLeft ? Qt::LeftToRight : Qt::RightToLeft;
        return taken;
    }
    // A text runs as its own letters do, wherever it stands.
    void write(const QString& text, const QFont& font, const QColor& color) {
        if (left.width() <= 0) return;
        painter.setFont(font);
        painter.setPen(color);
        const QFontMetrics metrics(font);
        const QString fitting = metrics.elidedText(text, Qt::ElideRight, left.width());
        const int way = text.isRightToLeft() ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight;
        painter.drawText(take(std::min(metrics.horizontalAdvance(fitting) + 1, left.width())),
                         Qt::AlignVCenter | Qt::AlignAbsolute | Qt::AlignLeft | Qt::TextSingleLine | way, fitting);
    }
    // Where it is too wide its end is cut off, which is on the left of what runs from right to left.
    void show(const QImage& image, bool runsLeftward) {
        const int width = static_cast<int>(image.width() / image.devicePixelRatio()) + 1;
        const QRect place = take(std::min(width, left.width()));
        painter.save();
        painter.setClipRect(place);
        painter.drawImage(runsLeftward ? QPoint(place.right() + 1 - width, place.top()) : place.topLeft(), image);
        painter.restore();
    }
};

void paintSeparator(QPainter& painter, const QStyleOptionViewItem& option) {
    painter.setPen(option.palette.color(QPalette::Disabled, QPalette::Text));
    const int y = option.rect.center().y();
    painter.drawLine(option.rect.left() + kGap, y, option.rect.right() - kGap, y);
}

void paintBadge(Line& line, const QStyleOptionViewItem& option, FontKind kind) {
    QFont font = option.font;
    font.setPixelSize(std::max(7, QFontInfo(font).pixelSize() * 2 / 3));
    const QFontMetrics metrics(font);
    const int width = metrics.horizontalAdvance(QStringLiteral("OT")) + 2 * kInset, height = metrics.height() + 1;
    QRect frame(QPoint(), QSize(width, height));
    frame.moveCenter(line.take(width).center());
    line.take(kGap);
    if (kind == FontKind::Unknown) return;
    line.painter.setRenderHint(QPainter::Antialiasing);
    line.painter.setFont(font);
    line.painter.setPen(textColor(option, true));
    line.painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    line.painter.drawText(frame, Qt::AlignCenter, QLatin1String(kBadges[static_cast<std::size_t>(kind)]));
    line.painter.setRenderHint(QPainter::Antialiasing, false);
}

}  // namespace

QSize FontMenuDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const QFont font = sized(option.font, model_.size());
    return {100, std::max(QFontMetrics(option.font).height() + 2 * kInset, QFontInfo(font).pixelSize() * 3 / 2)};
}

QImage FontMenuDelegate::image(const QStyleOptionViewItem& option, const QModelIndex& index,
                               const QColor& color) const {
    const FontMenuItem& item = model_.item(index);
    const FontFace* face = model_.face(index);
    if (item.drawing == Drawing::Plain || !face) return {};
    FaceText wanted;
    wanted.file = face->file;
    wanted.modified = model_.modified(index);
    wanted.index = face->index;
    wanted.text =
        item.drawing == Drawing::InFace ? index.data(Qt::DisplayRole).toString().toStdString() : sampleFor(*face);
    wanted.scale = option.widget ? option.widget->devicePixelRatioF() : 1;
    const auto pixels = [&](double points) { return static_cast<int>(points * wanted.scale + 0.5); };
    wanted.size = pixels(QFontInfo(sized(option.font, item.size)).pixelSize());
    wanted.height = pixels(option.rect.height());
    wanted.mostWidth = pixels(kWidestName);
    wanted.color = color.rgba();
    return images_.image(wanted);
}

void FontMenuDelegate::paint(QPainter* painter, const QStyleOptionViewItem& given, const QModelIndex& index) const {
    const FontMenuItem& item = model_.item(index);
    QStyleOptionViewItem option = withReadableSelection(given);
    option.font = given.widget ? given.widget->font() : given.font;
    painter->save();
    if (item.kind == Kind::Separator) {
        paintSeparator(*painter, option);
        return painter->restore();
    }
    const QStyle& style = option.widget ? *option.widget->style() : *QApplication::style();
    style.drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    Line line{*painter, option.rect.adjusted(kGap, 0, -kGap, 0), option.direction};
    const QColor color = textColor(option, !item.isActive || item.kind == Kind::Title);
    const QString title = index.data(Qt::DisplayRole).toString();
    if (item.kind == Kind::Title) {
        QFont bold = option.font;
        bold.setBold(true);
        line.write(title, bold, color);
        return painter->restore();
    }
    if (model_.hasMarks()) {
        const QFontMetrics metrics(option.font);
        Line check{*painter, line.take(metrics.horizontalAdvance(QChar(0x2713)) + kGap), option.direction};
        if (item.isMarked) check.write(QString(QChar(0x2713)), option.font, color);
    }
    if (model_.hasIcons() && item.face) paintBadge(line, option, item.icon);
    if (item.copies > 1) {
        const QString mark = QChar(0xD7) + QString::number(item.copies);
        const int width = QFontMetrics(option.font).horizontalAdvance(mark) + kGap;
        Line end{*painter, line.takeLast(width), option.direction};
        end.take(kGap);
        end.write(mark, option.font, textColor(option, true));
    }
    const QImage drawn = image(option, index, color);
    const bool isInFace = item.drawing == Drawing::InFace && !drawn.isNull();
    isInFace ? line.show(drawn, title.isRightToLeft()) : line.write(title, sized(option.font, item.size), color);
    if (!item.detail.empty()) {
        line.take(kGap);
        line.write(asOneLine(toQString(item.detail)), option.font, textColor(option, true));
    }
    if (!isInFace && !drawn.isNull()) {
        line.take(2 * kGap);
        line.show(drawn, false);
    }
    painter->restore();
}

}  // namespace qt
