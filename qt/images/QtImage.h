// An image as an icon: one picture in several sizes, or a drawing. One that is given as a function is made when it is
// first needed, on the main thread, which may read files; its size, in points, may be known before.
#pragma once

#include "platform/Controls.h"

#include <QIcon>

#include <functional>

namespace qt {

class QtImage final : public platform::Image {
public:
    explicit QtImage(QIcon icon) : icon_(std::move(icon)) {}
    explicit QtImage(std::function<QIcon()> make, QSize size = {}) : make_(std::move(make)), knownSize_(size) {}
    const QIcon& icon() const {
        if (make_) icon_ = std::exchange(make_, nullptr)();
        return icon_;
    }
    bool isMade() const { return !make_; }
    QSize knownSize() const { return knownSize_; }  // invalid when it is the icon that tells

    // Null for no image, and for one that this toolkit did not make.
    static const QtImage* of(const platform::ImageRef& image) { return dynamic_cast<const QtImage*>(image.get()); }

private:
    mutable QIcon icon_;
    mutable std::function<QIcon()> make_;
    QSize knownSize_;
};

}  // namespace qt
