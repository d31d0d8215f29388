#include "qt/texts/RichTextPictures.h"

#include "qt/texts/Text.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QTextObjectInterface>

#include <algorithm>

namespace qt {

namespace {

constexpr int kPictureObject = QTextFormat::UserObject + 1;
constexpr int kImage = QTextFormat::UserProperty + 1, kSize = QTextFormat::UserProperty + 2;

// The toolkit's own images are scaled pixel by pixel, and know one scale of the screen only.
class PictureDrawer final : public QObject, public QTextObjectInterface {
public:
    using QObject::QObject;
    void* qt_metacast(const char* name) override {
        if (qstrcmp(name, qobject_interface_iid<QTextObjectInterface*>()) == 0)
            return static_cast<QTextObjectInterface*>(this);
        return QObject::qt_metacast(name);
    }
    QSizeF intrinsicSize(QTextDocument*, int, const QTextFormat& format) override {
        return format.property(kSize).toSizeF();
    }
    void drawObject(QPainter* painter, const QRectF& rect, QTextDocument*, int, const QTextFormat& format) override {
        auto image = format.property(kImage).value<QImage>();
        QSize pixels = (rect.size() * painter->device()->devicePixelRatioF()).toSize();
        // Drawing at less than half the size would leave pixels out.
        if (pixels.width() * 2 < image.width())
            image = image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        painter->save();
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(rect, image);
        painter->restore();
    }
};

QImage readImage(const QString& path, int mostPixels) {
    if (path.isEmpty() || QFileInfo(path).size() > RichTextPictures::kLargestFile) return {};
    QImageReader reader(path, "png");
    reader.setAutoDetectImageFormat(false);
    QSize size = reader.canRead() ? reader.size() : QSize();
    bool isReadable = size.isValid() && std::max(size.width(), size.height()) <= RichTextPictures::kLargestSide &&
                      size.width() * size.height() <= mostPixels;
    return isReadable ? reader.read() : QImage();
}

// One length alone decides the other.
QSizeF shownSize(const RichTextRun& picture, const QImage& image) {
    QSizeF own = image.size();
    double width = picture.width, height = picture.height;
    if (width <= 0) width = height > 0 ? own.width() * height / own.height() : own.width();
    if (height <= 0) height = own.height() * width / own.width();
    double factor = std::min(1.0, RichTextPictures::kLargestShown / std::max(width, height));
    return {width * factor, height * factor};
}

}  // namespace

RichTextPictures::RichTextPictures(const QString& folder, QTextDocument& document) : folder_(folder) {
    QAbstractTextDocumentLayout* layout = document.documentLayout();
    if (!layout->handlerForObject(kPictureObject)) layout->registerHandler(kPictureObject, new PictureDrawer(layout));
}

QString RichTextPictures::fileNamed(const QString& name) const {
    if (name.contains(QLatin1Char('/'))) return {};
    QString folder = QFileInfo(folder_).canonicalFilePath();
    QFileInfo file(QFileInfo(QDir(folder), name).canonicalFilePath());
    return !folder.isEmpty() && file.isFile() && file.path() == folder ? file.filePath() : QString();
}

// A text may name the same picture thousands of times.
QImage RichTextPictures::imageNamed(const QString& name) {
    auto known = images_.constFind(name);
    if (known != images_.constEnd()) return *known;
    QImage image = readImage(fileNamed(name), pixelsLeft_);
    pixelsLeft_ -= image.width() * image.height();
    return *images_.insert(name, image);
}

std::optional<QTextCharFormat> RichTextPictures::format(const RichTextRun& picture) {
    QImage image = imageNamed(toQString(picture.picture));
    if (image.isNull()) return std::nullopt;
    QTextCharFormat format;
    format.setObjectType(kPictureObject);
    format.setProperty(kImage, image);
    format.setProperty(kSize, shownSize(picture, image));
    return format;
}

}  // namespace qt
