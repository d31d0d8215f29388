#include "qt/texts/PlainToolTips.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>

namespace qt {

namespace {

QString toolTipAt(QWidget& widget, const QPoint& place) {
    auto* view = qobject_cast<QAbstractItemView*>(widget.parentWidget());
    if (view && view->viewport() == &widget) return view->indexAt(place).data(Qt::ToolTipRole).toString();
    return widget.toolTip();
}

class PlainToolTips final : public QObject {
public:
    using QObject::QObject;

private:
    // A widget without one leaves it to the one around it.
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() != QEvent::ToolTip) return false;
        auto& widget = static_cast<QWidget&>(*object);
        auto& help = static_cast<QHelpEvent&>(*event);
        QString text = toolTipAt(widget, help.pos());
        if (!Qt::mightBeRichText(text)) return false;
        QToolTip::showText(help.globalPos(), plainToolTip(text), &widget);
        return true;
    }
};

}  // namespace

QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

void showPlainToolTips(QWidget& widget) {
    auto* filter = new PlainToolTips(&widget);
    widget.installEventFilter(filter);
    for (QWidget* below : widget.findChildren<QWidget*>()) below->installEventFilter(filter);
}

}  // namespace qt
