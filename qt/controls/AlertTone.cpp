#include "qt/controls/AlertTone.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace qt {

namespace {

constexpr int kGap = 6;  // points between sign and text

class AlertTone final : public QObject {
public:
    static AlertTone* of(const QObject& label) {
        return static_cast<AlertTone*>(label.findChild<QObject*>(name(), Qt::FindDirectChildrenOnly));
    }

    explicit AlertTone(QLabel& label) : QObject(&label), label_(label), sign_(new QLabel(&label)) {
        setObjectName(name());
        label.installEventFilter(this);
        applyColor();
        showSign();
    }
    void remove() {
        delete sign_;
        label_.removeEventFilter(this);
        label_.setContentsMargins({});
        label_.setPalette({});
        delete this;
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange) applyColor();
        if (event->type() == QEvent::FontChange) showSign();
        if (event->type() == QEvent::Paint) placeSign();
        return false;
    }

private:
    static QString name() { return QStringLiteral("alertTone"); }

    void applyColor() {
        const QColor color = alertColor(label_.palette());
        if (label_.palette().color(QPalette::WindowText) == color) return;
        QPalette palette;
        palette.setColor(QPalette::WindowText, color);
        label_.setPalette(palette);
        showSign();
    }

    void showSign() {
        const int extent = label_.fontMetrics().height();
        const QColor color = label_.palette().color(QPalette::WindowText);
        sign_->setPixmap(warningSign(extent, label_.devicePixelRatioF(), color));
        sign_->resize(extent, extent);
        sign_->show();
        label_.setContentsMargins(extent + kGap, 0, extent + kGap, 0);
        placeSign();
    }

    // Just before the text, or its first line.
    void placeSign() {
        const QRect text = label_.fontMetrics().boundingRect(
            label_.contentsRect(), int(label_.alignment()) | (label_.wordWrap() ? Qt::TextWordWrap : 0), label_.text());
        const bool isOneLine = text.height() < 2 * sign_->height();
        const int top = isOneLine ? label_.contentsRect().center().y() - sign_->height() / 2 : text.top();
        const int left = label_.isRightToLeft() ? std::min(text.right() + kGap, label_.width() - sign_->width())
                                                : std::max(0, text.left() - kGap - sign_->width());
        const QPoint place(left, top);
        if (sign_->pos() != place) sign_->move(place);
    }

    QLabel& label_;
    QLabel* sign_;
};

class AlertRole final : public QAccessibleWidget {
public:
    explicit AlertRole(QLabel& label) : QAccessibleWidget(&label, QAccessible::AlertMessage) {}
    QAccessible::Role role() const override {
        return AlertTone::of(*object()) ? QAccessible::AlertMessage : QAccessible::StaticText;
    }
    QString text(QAccessible::Text kind) const override {
        const QString own = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && own.isEmpty() ? static_cast<QLabel*>(object())->text() : own;
    }
    int childCount() const override { return 0; }  // the sign says what the role says
};

QAccessibleInterface* makeAlertRole(const QString& className, QObject* object) {
    auto* label = qobject_cast<QLabel*>(object);
    const bool mayAlert = label && className == QLatin1String("QLabel") && AlertTone::of(*label);
    return mayAlert ? new AlertRole(*label) : nullptr;
}

}  // namespace

// One red cannot be read on both a light and a dark ground.
QColor alertColor(const QPalette& palette) {
    const bool isDark = palette.color(QPalette::Window).lightness() < 128;
    return isDark ? QColor(0xff, 0x8a, 0x80) : QColor(0xb7, 0x1c, 0x1c);
}

// A triangle with an exclamation mark, drawn here because icon themes do not agree on what they show this small.
QPixmap warningSign(int extent, qreal scale, const QColor& color) {
    QPixmap sign(QSize(extent, extent) * scale);
    sign.setDevicePixelRatio(scale);
    sign.fill(Qt::transparent);
    QPainter painter(&sign);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(extent / 16.0, extent / 16.0);
    painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(color);
    painter.drawPolygon(QPolygonF({{8, 2.5}, {14.5, 13.5}, {1.5, 13.5}}));
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.drawLine(QPointF(8, 6.5), QPointF(8, 9));
    painter.drawPoint(QPointF(8, 12));
    return sign;
}

void setAlertTone(QLabel& label, bool isAlert) {
    static const bool sIsInstalled = [] {
        QAccessible::installFactory(makeAlertRole);
        return true;
    }();
    Q_UNUSED(sIsInstalled)
    AlertTone* tone = AlertTone::of(label);
    if (isAlert && !tone) {
        // What an assistive tool has seen of the label as plain text is made anew, as an alert.
        if (QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&label))
            QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(seen));
        new AlertTone(label);
    } else if (!isAlert && tone) {
        tone->remove();
    }
}

}  // namespace qt
