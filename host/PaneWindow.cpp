#include "host/PaneWindow.h"

#include "platform/qt/Text.h"

#include <QCloseEvent>
#include <QTimer>

namespace host {

using platform::UnselectReply;

std::string PaneWindow::load(const std::string& bundlePath) {
    if (std::string problem = pane_.load(bundlePath); !problem.empty()) return problem;
    setWindowTitle(platform::qt::toQString(pane_.bundle().infoValue("CFBundleName").stringValue()));
    resize(pane_.root().size().expandedTo(sizeHint()));
    return {};
}

void PaneWindow::showEvent(QShowEvent* event) {
    pane_.select();
    QWidget::showEvent(event);
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
