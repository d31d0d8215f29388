#include "qt/texts/PlainToolTips.h"

#include "qt/texts/ForeignText.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>

namespace qt {

namespace {

constexpr int kLongest = 1000;  // characters
constexpr int kMostLines = 15;
constexpr int kLongestLine = 120;  // characters; the toolkit breaks no lines but those of marked up text

QString toolTipAt(QWidget& widget, const QPoint& place) {
    auto* view = qobject_cast<QAbstractItemView*>(widget.parentWidget());
    if (view && view->viewport() == &widget) return view->indexAt(place).data(Qt::ToolTipRole).toString();
    return widget.toolTip();
}

// What the toolkit shows as just this text, as much of it as a screen has room for.
QString plainToolTip(const QString& text) {
    const QString start = text.section(QLatin1Char('\n'), 0, kMostLines - 1);
    const QString shown = shortened(start.size() < text.size() ? start + QStringLiteral("\n\u2026") : text, kLongest);
    if (shown.size() <= kLongestLine && !Qt::mightBeRichText(shown)) return shown;
    return Qt::convertFromPlainText(breakable(shown), Qt::WhiteSpaceNormal);
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
        const QString text = toolTipAt(widget, help.pos()), shown = plainToolTip(text);
        if (shown == text) return false;
        QToolTip::showText(help.globalPos(), shown, &widget);
        return true;
    }
};

}  // namespace

void showPlainToolTips(QWidget& widget) {
    auto* filter = new PlainToolTips(&widget);
    widget.installEventFilter(filter);
    for (QWidget* below : widget.findChildren<QWidget*>()) below->installEventFilter(filter);
}

}  // namespace qt
