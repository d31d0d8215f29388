#include "host/kcm/PanePage.h"

#include <QApplication>
#include <QLayout>
#include <QShowEvent>
#include <QThread>
#include <QTimer>

namespace kcm {

std::string PanePage::load(const std::string& bundlePath) {
    std::string problem = pane_.load(bundlePath);
#if QT_VERSION_MAJOR < 6
    // Up to Plasma 5 the application has margins of its own around a page.
    if (problem.empty() && pane_.root().layout()) pane_.root().layout()->setContentsMargins(0, 0, 0, 0);
#endif
    return problem;
}

void PanePage::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        lastWindow_ = window();
        pane_.select();
    }
    QWidget::showEvent(event);
}

// A window that is minimised has not been left.
void PanePage::hideEvent(QHideEvent* event) {
    if (!event->spontaneous() && pane_.askToLeave() == platform::UnselectReply::Now) pane_.unselect();
    QWidget::hideEvent(event);
}

void PanePage::replyToShouldUnselect(bool mayUnselect) {
    if (mayUnselect && !isVisible()) pane_.unselect();
}

void PanePage::retire() {
    if (parentWidget()) {
        hide();
        setParent(nullptr);
        connect(qApp, &QCoreApplication::aboutToQuit, this, &QObject::deleteLater);
    }
    bool isRunning = QThread::currentThread()->loopLevel() > 0;
    if (!isRunning || !waitsForSheet()) delete this;
}

// Some sheets stand on the page, some on the window that the page was in.
bool PanePage::waitsForSheet() {
    bool waits = false;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        QWidget* below = window->parentWidget() ? window->parentWidget()->window() : nullptr;
        if (!window->isVisible() || !window->isModal() || (below != this && below != lastWindow_)) continue;
        window->installEventFilter(this);
        waits = true;
    }
    return waits;
}

// Not at once: the pane is still in the middle of ending its sheet.
bool PanePage::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Hide) QTimer::singleShot(0, this, &PanePage::retire);
    return false;
}

}  // namespace kcm
