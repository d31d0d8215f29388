#include "host/PaneWindow.h"

#include "qt/texts/Utf8.h"

#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QScreen>
#include <QShortcut>
#include <QTimer>

namespace host {

using platform::UnselectReply;

namespace {

// For an assistive tool a widget is no window until it says so.
QAccessibleInterface* makeWindowRole(const QString&, QObject* object) {
    auto* window = dynamic_cast<PaneWindow*>(object);
    return window ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

}  // namespace

PaneWindow::PaneWindow(HostPlatform& platform) : pane_(platform, *this, *this) {
    static const bool sIsInstalled = [] {
        QAccessible::installFactory(makeWindowRole);
        return true;
    }();
    Q_UNUSED(sIsInstalled)
    for (const char* keys : {"Ctrl+W", "Ctrl+Q"})
        connect(new QShortcut(QKeySequence(QLatin1String(keys)), this), &QShortcut::activated, this, &QWidget::close);
}

std::string PaneWindow::load(const std::string& bundlePath) {
    if (std::string problem = pane_.load(bundlePath); !problem.empty()) return problem;
    setWindowTitle(qt::toQString(pane_.bundle().infoValue("CFBundleName").stringValue()));
    ownSize_ = pane_.root().size().expandedTo(sizeHint());
    resize(ownSize_);
    return {};
}

// What the pane shows only now, such as a warning, has its place too, unless the user chose the size.
void PaneWindow::showEvent(QShowEvent* event) {
    const bool isOwnSize = size() == ownSize_;
    pane_.select();
    if (isOwnSize) growToFit();
    QWidget::showEvent(event);
}

void PaneWindow::growToFit() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    ownSize_ = size().expandedTo(sizeHint()).boundedTo(screen()->availableSize());
    resize(ownSize_);
}

// When the text has another size, once all that is shown knows.
void PaneWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::FontChange || size() != ownSize_) return;
    QTimer::singleShot(0, this, &PaneWindow::growToFit);
}

void PaneWindow::closeEvent(QCloseEvent* event) {
    if (!wasAllowedToLeave_ && pane_.askToLeave() != UnselectReply::Now) return event->ignore();
    wasAllowedToLeave_ = false;
    pane_.unselect();
    event->accept();
}

// Not at once: the pane is still in the middle of ending its sheet.
void PaneWindow::replyToShouldUnselect(bool mayUnselect) {
    if (!mayUnselect) return;
    wasAllowedToLeave_ = true;
    QTimer::singleShot(0, this, &QWidget::close);
}

}  // namespace host
