#include "qt/controls/QtTextView.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QScrollBar>
#include <QTextDocument>
#include <QUrl>

#include <cmath>

namespace qt {

using namespace platform;

// A document whose pictures come from one folder.
class QtTextView::FolderDocument final : public QTextDocument {
public:
    explicit FolderDocument(QTextEdit& widget) : QTextDocument(&widget) {
        setDefaultFont(widget.font());
        documentLayout()->setPaintDevice(widget.viewport());
        widget.setDocument(this);
    }
    void setFolder(const QString& path) {
        folder_ = QDir(path);
        clear();  // forgets the pictures of the folder before
    }

protected:
    QVariant loadResource(int type, const QUrl& address) override {
        QImage picture;
        if (type == ImageResource && isOfFolder(address)) picture.load(folder_.filePath(address.path()));
        // What is left unanswered the toolkit looks for among all files.
        if (picture.isNull()) {
            picture = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
            picture.fill(Qt::transparent);
        }
        addResource(type, address, picture);
        return picture;
    }

private:
    bool isOfFolder(const QUrl& address) const {
        const QFileInfo file(folder_.filePath(address.path()));
        return address.isRelative() && file.isFile() &&
               QFileInfo(file.canonicalFilePath()).path() == folder_.canonicalPath();
    }

    QDir folder_;
};

QtTextView::QtTextView(QTextEdit& widget)
    : WidgetView(widget), document_(*new FolderDocument(widget)), motion_(widget) {
    auto hold = [this] { isHeld_ = true; };
    QObject::connect(widget.verticalScrollBar(), &QAbstractSlider::actionTriggered, &connections_, hold);
    // A plain click says so, too, and selects nothing.
    QObject::connect(&widget, &QTextEdit::selectionChanged, &connections_, [this] {
        if (widget_.textCursor().hasSelection()) isHeld_ = true;
    });
}

Rect QtTextView::frame() const {
    QSizeF size = document_.size();
    return {{}, {size.width(), size.height()}};
}

bool QtTextView::loadRichText(std::string_view path) {
    QDir folder(toQString(path));
    QFile file(folder.filePath(QStringLiteral("TXT.html")));
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) return false;
    const QByteArray html = file.readAll();
    if (file.error() != QFileDevice::NoError) return false;
    document_.setFolder(folder.path());
    widget_.setHtml(QString::fromUtf8(html));
    widget_.moveCursor(QTextCursor::Start);
    isHeld_ = false;
    motion_.follow();
    return true;
}

void QtTextView::scrollPoint(const Point& point) {
    if (isHeld_ || motion_.isUnwanted()) return;
    widget_.verticalScrollBar()->setValue(static_cast<int>(std::lround(point.y)));
}

}  // namespace qt
