#include "qt/images/IconContainer.h"

#include <QPixmap>
#include <QtEndian>

namespace qt {

namespace {

constexpr quint32 kHeaderSize = 8;

quint32 bigEndianAt(const QByteArray& bytes, quint32 offset) {
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

}  // namespace

QIcon iconFromContainer(const QByteArray& bytes) {
    QIcon icon;
    const auto size = static_cast<quint32>(bytes.size());
    if (!bytes.startsWith("icns")) return icon;
    for (quint32 at = kHeaderSize; at + kHeaderSize <= size;) {
        quint32 length = bigEndianAt(bytes, at + 4);
        if (length < kHeaderSize || length > size - at) break;
        QPixmap pixmap;
        if (pixmap.loadFromData(bytes.mid(static_cast<int>(at + kHeaderSize), static_cast<int>(length - kHeaderSize)),
                                "PNG"))
            icon.addPixmap(pixmap);
        at += length;
    }
    return icon;
}

}  // namespace qt
