#include "platform/qt/QtTextView.h"

#include "platform/qt/RichText.h"

#include <QDir>
#include <QFile>

namespace platform::qt {

bool QtTextView::loadRichText(std::string_view path) {
    QFile file(QDir(toQString(path)).filePath(QStringLiteral("TXT.rtf")));
    if (!file.open(QIODevice::ReadOnly)) return false;
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) return false;
    if (!readRichText({bytes.constData(), static_cast<std::size_t>(bytes.size())}, *widget_.document())) return false;
    widget_.moveCursor(QTextCursor::Start);
    return true;
}

}  // namespace platform::qt
