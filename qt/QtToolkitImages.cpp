// Composing images.
#include "qt/QtToolkit.h"

#include <QPainter>

namespace qt {

using namespace platform;

namespace {

QSize sizeOf(const QtImage* image) {
    constexpr QSize kLargest(QtToolkit::kLargestImage, QtToolkit::kLargestImage);
    if (image && image->knownSize().isValid()) return image->knownSize();
    if (!image || image->icon().isNull()) return {0, 0};
    // A drawing has any size.
    return image->icon().availableSizes().isEmpty() ? kLargest : image->icon().actualSize(kLargest);
}

QImage picture(const ImageRef& image) {
    QImage canvas(sizeOf(QtImage::of(image)), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    QtImage::of(image)->icon().paint(&painter, canvas.rect());
    return canvas;
}

// From y growing upward to y growing downward in an image of this height.
QRectF flipped(const Rect& rect, int height) {
    return {rect.origin.x, height - rect.origin.y - rect.size.height, rect.size.width, rect.size.height};
}

}  // namespace

Size QtToolkit::imageSize(const ImageRef& image) {
    QSize size = sizeOf(QtImage::of(image));
    return {double(size.width()), double(size.height())};
}

ImageRef QtToolkit::imageByDrawing(const ImageRef& base, const ImageRef& image, const Rect& destination,
                                   const Rect& source) {
    const QSize size = sizeOf(QtImage::of(base));
    if (size.isEmpty() || sizeOf(QtImage::of(image)).isEmpty()) return base;
    auto draw = [base, image, destination, source] {
        QImage canvas = picture(base);
        QImage drawn = picture(image);
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(flipped(destination, canvas.height()), drawn, flipped(source, drawn.height()));
        painter.end();
        return QIcon(QPixmap::fromImage(canvas));
    };
    return std::make_shared<QtImage>(draw, size);
}

}  // namespace qt
