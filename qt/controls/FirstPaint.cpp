#include "qt/controls/FirstPaint.h"

#include <QEvent>

#include <utility>

namespace qt {

namespace {

constexpr int kUnseen = 500;  // milliseconds

}  // namespace

FirstPaint::FirstPaint(QWidget& widget, std::function<void()> function) : function_(std::move(function)) {
    widget.installEventFilter(this);
    timer_.setSingleShot(true);
    // A widget that nobody saw at first is painted later.
    timer_.callOnTimeout([this] {
        if (auto once = std::exchange(function_, nullptr)) once();
    });
}

bool FirstPaint::eventFilter(QObject* widget, QEvent* event) {
    if (isOver()) return false;  // called before anybody saw the widget
    if (event->type() == QEvent::Show && !timer_.isActive()) timer_.start(kUnseen);
    if (event->type() == QEvent::Paint) timer_.start(0);
    if (event->type() == QEvent::Paint) widget->removeEventFilter(this);
    return false;
}

}  // namespace qt
