#include "qt/controls/MessageLine.h"

#include "qt/texts/ForeignText.h"
#include "qt/texts/PlainToolTips.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace qt {

namespace {

constexpr int kMostLines = 4;
constexpr int kLeastCharacters = 12;  // that a line of text has room for

// Lines that are broken between words, and within those that are too long for one, as paths are.
class BrokenText final : public QLabel {
public:
    using QLabel::QLabel;

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override {
        QTextLayout layout;
        return breakLines(layout, text(), *this, width, kMostLines) * fontMetrics().lineSpacing();
    }
    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override {
        return {kLeastCharacters * fontMetrics().averageCharWidth(), fontMetrics().lineSpacing()};
    }

private:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QTextLayout layout;
        const int lines = breakLines(layout, text(), *this, width(), kMostLines + 1),
                  shown = std::min(lines, kMostLines);
        const int height = fontMetrics().lineSpacing(), top = (this->height() - shown * height) / 2;
        painter.setLayoutDirection(layout.textOption().textDirection());
        for (int i = 0; i < shown; ++i) {
            const QTextLine line = layout.lineAt(i);
            const QRect place(0, top + i * height, width(), height);
            if (i + 1 < shown || lines == shown)
                line.draw(&painter, QPointF(0, place.y() - line.y()));
            else
                painter.drawText(place, int(layout.textOption().alignment()),
                                 fontMetrics().elidedText(text().mid(line.textStart()), Qt::ElideRight, width()));
        }
    }
};

// A cross in the colour of the text, which the style's own has not on every ground.
class CloseButton final : public QToolButton {
public:
    explicit CloseButton(QWidget* parent) : QToolButton(parent) {
        setAutoRaise(true);
        setFocusPolicy(Qt::TabFocus);
    }
    QSize sizeHint() const override {
        const int extent = style()->pixelMetric(QStyle::PM_SmallIconSize) + 6;
        return {extent, extent};
    }

private:
    void paintEvent(QPaintEvent*) override {
        QStylePainter painter(this);
        QStyleOptionToolButton option;
        initStyleOption(&option);
        painter.drawComplexControl(QStyle::CC_ToolButton, option);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::WindowText), 1.5, Qt::SolidLine, Qt::RoundCap));
        const QPointF middle = QRectF(rect()).center();
        constexpr qreal kReach = 4;
        painter.drawLine(middle - QPointF(kReach, kReach), middle + QPointF(kReach, kReach));
        painter.drawLine(middle - QPointF(kReach, -kReach), middle + QPointF(kReach, -kReach));
    }
};

QAccessibleInterface* makeAlert(const QString&, QObject* object) {
    auto* line = dynamic_cast<MessageLine*>(object);
    return line ? new QAccessibleWidget(line, QAccessible::AlertMessage) : nullptr;
}

void tellAssistiveTools(QWidget& line, QAccessible::Event what) {
    QAccessibleEvent event(&line, what);
    QAccessible::updateAccessibility(&event);
}

}  // namespace

MessageLine::MessageLine(QWidget& parent, const QString& closeHint, std::function<void()> onButton,
                         std::function<void()> onClose)
    : QFrame(&parent), sign_(*new QLabel(this)), text_(*new BrokenText(this)), button_(*new QPushButton(this)) {
    static const bool sIsInstalled = [] {
        QAccessible::installFactory(makeAlert);
        return true;
    }();
    Q_UNUSED(sIsInstalled)
    setObjectName(QStringLiteral("messageLine"));
    auto* close = new CloseButton(this);
    close->setToolTip(closeHint);
    close->setAccessibleName(closeHint);
    close->setObjectName(QStringLiteral("messageClose"));
    button_.setObjectName(QStringLiteral("messageButton"));
    button_.setAutoDefault(false);
    text_.setObjectName(QStringLiteral("messageText"));
    text_.setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    text_.setSizePolicy(policy);

    auto* row = new QHBoxLayout(this);
    const int margin = style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing);
    row->setContentsMargins(margin + 2, margin, margin, margin);
    row->addWidget(&sign_);
    row->addWidget(&text_, 1);
    row->addWidget(&button_);
    row->addWidget(close);
    connect(&button_, &QPushButton::clicked, this, std::move(onButton));
    connect(close, &QToolButton::clicked, this, std::move(onClose));
    QWidget::hide();
    showPlainToolTips(*this);
}

void MessageLine::say(Tone tone, const QString& text, const Button& button) {
    tone_ = tone;
    showSign();
    button_.setText(button.title);
    button_.setToolTip(button.hint);
    button_.setVisible(!button.title.isEmpty());
    const bool isNew = isHidden() || text != text_.text();
    text_.setText(text);
    text_.setToolTip(text);
    setAccessibleName(text);
    update();
    if (!isNew) return;
    text_.updateGeometry();
    updateGeometry();
    // Readers that wait for alerts to appear are told of the next message of one that is there already, too.
    if (isHidden())
        show();
    else
        tellAssistiveTools(*this, QAccessible::ObjectShow);
    tellAssistiveTools(*this, QAccessible::Alert);
}

void MessageLine::sayNothing() { hide(); }

// For as wide as the parent is, which it has not been given yet.
QSize MessageLine::sizeHint() const {
    const QSize least = minimumSizeHint();
    return {least.width(), std::max(least.height(), heightForWidth(std::max(least.width(), parentWidget()->width())))};
}

QColor MessageLine::color() const {
    return tone_ == Tone::Warning ? QColor(0xf6, 0x74, 0x00) : QColor(0x3d, 0xae, 0xe9);
}

void MessageLine::showSign() {
    const int extent = style()->pixelMetric(QStyle::PM_SmallIconSize);
    const auto kind = tone_ == Tone::Warning ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
    sign_.setPixmap(style()->standardIcon(kind, nullptr, this).pixmap(extent, extent));
}

void MessageLine::changeEvent(QEvent* event) {
    if (event->type() == QEvent::StyleChange) showSign();
    QFrame::changeEvent(event);
}

void MessageLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = color();
    ground.setAlphaF(0.15F);
    painter.setPen(color());
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(contentsRect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
}

}  // namespace qt
