#include "qt/controls/QtTextView.h"

#include "qt/texts/RichText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScrollBar>

#include <cmath>

namespace qt {

using namespace platform;

QtTextView::QtTextView(QTextEdit& widget) : WidgetView(widget) {
    auto hold = [this] { isHeldByUser_ = true; };
    QObject::connect(widget.verticalScrollBar(), &QAbstractSlider::actionTriggered, &connections_, hold);
    QObject::connect(&widget, &QTextEdit::selectionChanged, &connections_, hold);
}

Rect QtTextView::frame() const {
    QSizeF size = widget_.document()->size();
    return {{}, {size.width(), size.height()}};
}

bool QtTextView::loadRichText(std::string_view path) {
    QDir folder(toQString(path));
    QFile file(folder.filePath(QStringLiteral("TXT.rtf")));
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) return false;
    QByteArray bytes = file.read(kLongestRichText);
    if (file.error() != QFileDevice::NoError) return false;
    std::string_view rtf(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (!readRichText(rtf, folder.path(), *widget_.document())) return false;
    widget_.moveCursor(QTextCursor::Start);
    isHeldByUser_ = false;
    return true;
}

void QtTextView::scrollPoint(const Point& point) {
    if (!isHeldByUser_) widget_.verticalScrollBar()->setValue(static_cast<int>(std::lround(point.y)));
}

}  // namespace qt
