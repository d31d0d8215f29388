#include "qt/controls/DifferenceMark.h"

#include "qt/texts/Utf8.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace qt {

namespace {

// Points.
constexpr int kWidth = 3, kDistance = 5;

class DifferenceMark final : public QWidget {
public:
    DifferenceMark(QWidget& control, const platform::ControlMark& mark)
        : QWidget(control.parentWidget()),
          control_(control),
          mark_(mark),
          description_(control.accessibleDescription()),
          toolTip_(control.toolTip()) {
        setObjectName(control.objectName() + QStringLiteral("Difference"));
        setCursor(Qt::PointingHandCursor);
        const QString said = toQString(mark.description);
        setToolTip(said);
        setAccessibleName(said);
        control.setToolTip(toolTip_.isEmpty() ? said : toolTip_ + QStringLiteral("\n") + said);
        control.setAccessibleDescription(description_.isEmpty() ? said : description_ + QStringLiteral(" ") + said);
        control.installEventFilter(this);
        follow();
        raise();
    }
    void goAway() {
        control_.removeEventFilter(this);
        control_.setToolTip(toolTip_);
        control_.setAccessibleDescription(description_);
        hide();
        deleteLater();
    }

private:
    void follow() {
        const QRect place = control_.geometry();
        const int x = control_.isRightToLeft() ? place.right() + kDistance - kWidth + 1 : place.left() - kDistance;
        setGeometry(std::max(0, std::min(x, parentWidget()->width() - kWidth)), place.top(), kWidth, place.height());
        setVisible(!control_.isHidden());
    }
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
            case QEvent::Move:
            case QEvent::Resize:
            case QEvent::Show:
            case QEvent::Hide:
            case QEvent::LayoutDirectionChange:
                follow();
                return false;
            case QEvent::ContextMenu:
                showMenu(static_cast<QContextMenuEvent*>(event)->globalPos());
                return true;
            default:
                return false;
        }
    }
    void mousePressEvent(QMouseEvent* event) override { showMenu(mapToGlobal(event->pos())); }
    void showMenu(QPoint place) {
        auto* menu = new QMenu(&control_);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        QAction* action = menu->addAction(toQString(mark_.actionTitle));
        action->setEnabled(control_.isEnabled());
        connect(action, &QAction::triggered, &control_, mark_.perform);
        menu->popup(place);
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(control_.isEnabled() ? QPalette::Active : QPalette::Disabled,
                                         control_.isEnabled() ? QPalette::Highlight : QPalette::WindowText));
        painter.drawRoundedRect(rect(), 1.5, 1.5);
    }

    QWidget& control_;
    const platform::ControlMark mark_;
    const QString description_, toolTip_;
};

}  // namespace

void setDifferenceMark(QWidget& control, const std::optional<platform::ControlMark>& mark) {
    if (!control.parentWidget()) return;
    for (QObject* child : control.parentWidget()->children())
        if (auto* old = dynamic_cast<DifferenceMark*>(child);
            old && old->objectName() == control.objectName() + QStringLiteral("Difference")) {
            old->setObjectName({});
            old->goAway();
        }
    if (mark) new DifferenceMark(control, *mark);
}

}  // namespace qt
