#include "qt/controls/FittingSplitter.h"

#include <QResizeEvent>

namespace qt {

FittingSplitter::FittingSplitter(QWidget* parent) : QSplitter(Qt::Vertical, parent) {
    setHandleWidth(8);
    // What is on the right is put a point too far there.
    if (isRightToLeft()) setContentsMargins(0, 0, 1, 0);
    connect(this, &QSplitter::splitterMoved, this, [this] { isUsers_ = true; });
}

QSize FittingSplitter::stacked(QSize (QWidget::*hint)() const) const {
    QSize all(0, -handleWidth());
    for (int i = 0; i < count(); ++i) {
        const QWidget& part = *widget(i);
        if (part.isHidden()) continue;
        const QSize wanted = (part.*hint)().expandedTo(part.minimumSize());
        all = {std::max(all.width(), wanted.width()), all.height() + handleWidth() + wanted.height()};
    }
    return all.expandedTo({0, 0});
}

void FittingSplitter::resizeEvent(QResizeEvent* event) {
    constexpr int kRoom = 75;  // letters, for both side by side
    const bool isWide = event->size().width() >= kRoom * fontMetrics().averageCharWidth();
    if (const auto wanted = isWide ? Qt::Horizontal : Qt::Vertical; wanted != orientation()) {
        setOrientation(wanted);
        isUsers_ = false;  // what was a height says nothing about a width
    }
    QSplitter::resizeEvent(event);
    const int half = (isWide ? width() : height()) / 2;
    if (!isUsers_) setSizes({half, half});
}

}  // namespace qt
