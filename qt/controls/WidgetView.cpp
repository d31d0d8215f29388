#include "qt/controls/WidgetView.h"

#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QSplitter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace qt {

using namespace platform;

QWidget* widgetOf(View* view) {
    auto* holder = dynamic_cast<HasWidget*>(view);
    return holder ? holder->qWidget() : nullptr;
}

namespace {

constexpr char kHadKeyboard[] = "hadKeyboard";

int heightAround(const QWidget& widget) {
    return widget.parentWidget() && !widget.isWindow() ? widget.parentWidget()->height() : widget.height();
}

int rounded(double points) { return static_cast<int>(std::lround(points)); }

// For the Tab key, too, what is in one widget comes where what is in the other is.
void takeTabPlace(QWidget& widget, QWidget& other) {
    QList<QWidget*> stops;
    for (QWidget* next = widget.nextInFocusChain(); next != &widget; next = next->nextInFocusChain())
        if (next->focusPolicy() & Qt::TabFocus) stops << next;
    // Qt releases differ in where a widget without the keyboard stands among those with it.
    std::rotate(stops.begin(),
                std::find_if_not(stops.begin(), stops.end(), [&](auto* s) { return widget.isAncestorOf(s); }),
                stops.end());
    QWidget* last = nullptr;
    QList<QWidget*> parts;
    for (QWidget* stop : stops) {
        if (widget.isAncestorOf(stop)) last = stop;
        if (other.isAncestorOf(stop)) parts << stop;
    }
    for (QWidget* part : parts) QWidget::setTabOrder(std::exchange(last, part), part);
}

}  // namespace

void setEnabledWithLabel(QWidget& widget, bool enabled) {
    widget.setEnabled(enabled);
    if (!widget.parentWidget()) return;
    for (QLabel* label : widget.parentWidget()->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly))
        if (label->buddy() == &widget) label->setEnabled(enabled);
}

// A widget that was not shown yet counts as hidden for Qt, though it will appear with its parent.
bool isHiddenItself(const QWidget& widget) {
    return widget.isHidden() && widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
}

void replaceWidget(QWidget& widget, QWidget* other) {
    QWidget* parent = widget.parentWidget();
    if (!parent || !other) return;
    const bool isFromElsewhere = other->window() != widget.window();
    if (auto* splitter = qobject_cast<QSplitter*>(parent))
        splitter->replaceWidget(splitter->indexOf(&widget), other);
    else
        other->setParent(parent);
    if (isFromElsewhere) takeTabPlace(widget, *other);
    if (QLayout* layout = parent->layout()) delete layout->replaceWidget(&widget, other);
    // Hidden, it loses the keyboard; it has it again when it comes back.
    const QPointer<QWidget> keyboard = widget.window()->focusWidget();
    if (keyboard && widget.isAncestorOf(keyboard)) widget.setProperty(kHadKeyboard, QVariant::fromValue(keyboard));
    widget.hide();
    other->show();
    const auto hadKeyboard = other->property(kHadKeyboard).value<QPointer<QWidget>>();
    other->setProperty(kHadKeyboard, {});
    if (hadKeyboard) hadKeyboard->setFocus();
}

Rect frameOf(const QWidget& widget) {
    QRect g = widget.geometry();
    double y = heightAround(widget) - (g.y() + g.height());
    return {{double(g.x()), y}, {double(g.width()), double(g.height())}};
}

void setFrameOf(QWidget& widget, const Rect& frame) {
    int height = rounded(frame.size.height);
    int top = heightAround(widget) - rounded(frame.origin.y) - height;
    widget.setGeometry(rounded(frame.origin.x), top, rounded(frame.size.width), height);
}

}  // namespace qt
