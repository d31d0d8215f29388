#include "qt/images/FileIcons.h"

#include "qt/images/ForeignPicture.h"
#include "qt/images/IconContainer.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace qt {

namespace {

QByteArray contentsOf(const QString& path, qint64 limit) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(limit) : QByteArray();
}

QIcon iconOfSvg(const QString& path) { return QSvgRenderer(path).isValid() ? QIcon(path) : QIcon(); }

// The toolkit's own way to an icon asks every image plug-in there is.
QIcon iconOfPicture(const QString& path) {
    const QDateTime modified = QFileInfo(path).lastModified();
    const QString key = path + QString::number(modified.toMSecsSinceEpoch());
    QPixmap picture;
    if (QPixmapCache::find(key, &picture)) return {picture};
    QImageReader reader;
    openPicture(reader, path);
    if (reader.autoDetectImageFormat()) return QIcon(path);
    picture = QPixmap::fromImageReader(&reader);
    QPixmapCache::insert(key, picture);
    return {picture};
}

QIcon iconOfKind(const QString& path) {
    QMimeType type = QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension);
    QIcon icon = QIcon::fromTheme(type.iconName());
    return icon.isNull() ? QIcon::fromTheme(type.genericIconName()) : icon;
}

// A window with a title bar.
QPixmap drawnProgram(int extent) {
    QPixmap pixmap(extent, extent);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(extent / 32.0, extent / 32.0);
    painter.setPen(QPen(QColor(0x5f, 0x6b, 0x7a), 1));
    painter.setBrush(QColor(0xf4, 0xf6, 0xf8));
    painter.drawRoundedRect(QRectF(3.5, 5.5, 25, 21), 3, 3);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x7d, 0x8b, 0x9b));
    painter.drawRect(QRectF(4, 9, 24, 3));
    painter.setBrush(QColor(0xc5, 0xce, 0xd6));
    for (double y : {15.0, 18.5, 22.0}) painter.drawRect(QRectF(7, y, y > 20 ? 10 : 18, 1.5));
    return pixmap;
}

}  // namespace

QIcon iconOfImageFile(const QString& path) {
    constexpr qint64 kLargestContainer = 1 << 26;
    if (!QFileInfo(path).isFile()) return {};
    if (path.endsWith(QStringLiteral(".icns"), Qt::CaseInsensitive))
        return iconFromContainer(contentsOf(path, kLargestContainer));
    if (!isHarmlessPicture(path)) return {};
    return path.endsWith(QStringLiteral(".svg"), Qt::CaseInsensitive) ? iconOfSvg(path) : iconOfPicture(path);
}

QIcon iconNamed(const QString& name) {
    if (name.isEmpty()) return {};
    if (QFileInfo(name).isAbsolute()) return iconOfImageFile(name);
    if (QIcon icon = QIcon::fromTheme(name); !icon.isNull()) return icon;
    const QString base = QStringLiteral("/usr/share/pixmaps/") + name;
    for (const char* suffix : {"", ".png", ".svg", ".xpm"})
        if (QIcon icon = iconOfImageFile(base + QLatin1String(suffix)); !icon.isNull()) return icon;
    return {};
}

QIcon iconOfFile(const QString& path) {
    QIcon icon = iconOfKind(path);
    return icon.isNull() ? iconOfPrograms() : icon;
}

QIcon iconOfPrograms() {
    if (QIcon icon = QIcon::fromTheme(QStringLiteral("application-x-executable")); !icon.isNull()) return icon;
    QIcon icon;
    for (int extent : {32, 64, 128}) icon.addPixmap(drawnProgram(extent));
    return icon;
}

}  // namespace qt
