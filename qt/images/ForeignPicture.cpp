#include "qt/images/ForeignPicture.h"

#include <QFile>
#include <QImageReader>
#include <QXmlStreamReader>

#include <algorithm>

namespace qt {

namespace {

// A part of the drawing itself, or a picture within it that is none of another drawing.
bool staysInside(QStringView target) {
    return target.startsWith(QLatin1Char('#')) || target.startsWith(QStringLiteral("data:image/png")) ||
           target.startsWith(QStringLiteral("data:image/jpeg"));
}

bool isDrawing(const QByteArray& start) {
    constexpr char kCompressed[] = "\x1F\x8B";
    return start.trimmed().startsWith('<') || start.startsWith(kCompressed);
}

}  // namespace

bool isHarmlessDrawing(const QByteArray& svg) {
    QXmlStreamReader reader(svg);
    int repetitions = 0;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::ProcessingInstruction) return false;
        if (token != QXmlStreamReader::StartElement) continue;
        repetitions += reader.name() == QLatin1String("use");
        if (repetitions > kMostRepetitions) return false;
        const bool isLink = reader.name() == QLatin1String("a");
        for (const QXmlStreamAttribute& attribute : reader.attributes())
            if (attribute.name() == QLatin1String("href") && !isLink && !staysInside(attribute.value().trimmed()))
                return false;
    }
    return !reader.hasError();
}

void openPicture(QImageReader& reader, const QString& path) {
    reader.setFileName(path);
    reader.setFormat("PNG");
    reader.setAutoDetectImageFormat(false);
    if (reader.canRead()) return;
    reader.setFileName(path);  // which forgets what it found out
    reader.setFormat({});
    reader.setAutoDetectImageFormat(true);
}

bool isHarmlessPicture(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    const QByteArray start = file.peek(256);
    if (path.endsWith(QStringLiteral(".svg"), Qt::CaseInsensitive) || isDrawing(start))
        return file.size() <= kLargestDrawing && isHarmlessDrawing(file.readAll());
    QImageReader reader;
    openPicture(reader, path);
    const QSize size = reader.size();
    return reader.canRead() && std::max(size.width(), size.height()) <= kLargestPicture;
}

}  // namespace qt
