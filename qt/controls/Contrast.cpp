#include "qt/controls/Contrast.h"

#include <cmath>
#include <utility>

namespace qt {

namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor mixed(const QColor& a, const QColor& b, double shareOfB) {
    auto mix = [shareOfB](double x, double y) { return x + (y - x) * shareOfB; };
    return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()), mix(a.blueF(), b.blueF()));
}

}  // namespace

double contrastOf(const QColor& a, const QColor& b) {
    double lighter = luminance(a), darker = luminance(b);
    if (lighter < darker) std::swap(lighter, darker);
    return (lighter + 0.05) / (darker + 0.05);
}

QColor readableOn(const QColor& ground, const QColor& wanted, const QColor& otherwise, double contrast) {
    constexpr int kSteps = 32;
    const QColor seen = mixed(ground, wanted, wanted.alphaF());
    for (int step = 0; step < kSteps; ++step) {
        const QColor color = mixed(seen, otherwise, double(step) / kSteps);
        if (contrastOf(color, ground) >= contrast) return color;
    }
    return otherwise;
}

}  // namespace qt
