#include "qt/controls/FittingScrollArea.h"

#include <QEvent>
#include <QScrollBar>

namespace qt {

int FittingScrollArea::widthBesideContent() const {
    return 2 * frameWidth() + (isTooLow_ ? verticalScrollBar()->sizeHint().width() : 0);
}

QSize FittingScrollArea::sizeHint() const {
    QSize content = widget() ? widget()->sizeHint() : QSize();
    return content + QSize(widthBesideContent(), 2 * frameWidth());
}

QSize FittingScrollArea::minimumSizeHint() const {
    constexpr int kLowest = 120;
    return {(widget() ? widget()->minimumSizeHint().width() : 0) + widthBesideContent(), kLowest};
}

void FittingScrollArea::showWhatLiesBehind() {
    if (frameShape() != QFrame::NoFrame || !widget()) return;
    viewport()->setAutoFillBackground(false);
    widget()->setAutoFillBackground(false);
}

void FittingScrollArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    bool isTooLow = widget() && widget()->minimumSizeHint().height() > height();
    if (isTooLow == isTooLow_) return;
    isTooLow_ = isTooLow;
    updateGeometry();
}

// The area watches its content already, for its size only; other texts may change what the content asks for.
bool FittingScrollArea::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

}  // namespace qt
