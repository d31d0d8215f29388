#include "qt/QtToolkit.h"

#include "qt/images/FileIcons.h"
#include "qt/texts/ForeignText.h"
#include "qt/texts/Utf8.h"

#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>

namespace qt {

using namespace platform;

// A file that was replaced is read again.
template <typename Make>
ImageRef QtToolkit::kept(Cache& cache, const QString& path, Make make) {
    QDateTime modified = QFileInfo(path).lastModified();
    auto found = cache.constFind(path);
    if (found != cache.constEnd() && found->modified == modified) return found->image;
    ImageRef image = make(path);
    cache.insert(path, {modified, image});
    return image;
}

ImageRef QtToolkit::imageAtPath(std::string_view path) {
    return kept(images_, toQString(path), [](const QString& file) -> ImageRef {
        QIcon icon = iconOfImageFile(file);
        return icon.isNull() ? nullptr : std::make_shared<QtImage>(icon);
    });
}

ImageRef QtToolkit::workspaceIcon(std::string_view path) {
    return kept(workspaceIcons_, toQString(path), [this](const QString& file) -> ImageRef {
        return std::make_shared<QtImage>([file, finder = iconName_] {
            QIcon icon = iconNamed(toQString(finder(file.toStdString())));
            return icon.isNull() ? iconOfFile(file) : icon;
        });
    });
}

ImageRef QtToolkit::genericApplicationIcon() {
    if (!genericIcon_) genericIcon_ = std::make_shared<QtImage>(iconOfPrograms);
    return genericIcon_;
}

void QtToolkit::setWindow(QWidget* window) {
    window_ = window;
    firstPaint_ = window ? std::make_unique<FirstPaint>(*window, [this] { windowWasPainted(); }) : nullptr;
}

void QtToolkit::windowWasPainted() {
    showApplicationIcon();
    if (listingDue_) std::exchange(listingDue_, nullptr)();
}

ImageRef QtToolkit::applicationIcon() {
    if (postponedIcon_) return postponedIcon_;
    QIcon icon = QApplication::windowIcon();
    return icon.isNull() ? genericApplicationIcon() : std::make_shared<QtImage>(icon);
}

void QtToolkit::setApplicationIcon(const ImageRef& image) {
    if (!QtImage::of(image)) return;
    postponedIcon_ = image;
    if (!window_ || firstPaint_->isOver()) showApplicationIcon();
}

// Given back, what stood in for no icon is no icon again.
void QtToolkit::showApplicationIcon() {
    const ImageRef image = std::exchange(postponedIcon_, nullptr);
    if (image) QApplication::setWindowIcon(image == genericIcon_ ? QIcon() : QtImage::of(image)->icon());
}

void QtToolkit::runAlert(std::string_view title, std::string_view message) {
    QMessageBox alert(QMessageBox::Warning, toQString(title), {}, QMessageBox::Ok, window_);
    alert.setText(toQString(title));
    alert.setInformativeText(breakable(toQString(message)));
    for (QLabel* label : alert.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
    alert.setWindowModality(Qt::WindowModal);
    alert.exec();
}

void QtToolkit::beep() { QApplication::beep(); }

}  // namespace qt
