// Colours that can be read on each other, whatever palette the desktop has.
#pragma once

#include <QColor>

namespace qt {

// From 1, for equal colours, to 21, of black and white: the contrast ratio of WCAG 2.1
// (https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio). Both colours count as opaque.
double contrastOf(const QColor& a, const QColor& b);

// WCAG asks for 4.5 of a text. Small letters are smoothed and come out a little paler than their colour.
inline constexpr double kReadable = 5.2;

// The wanted colour as it lies on the ground, or, where the two have less contrast than that, the nearest to it on the
// way to the other one that has enough; that other one when none has.
QColor readableOn(const QColor& ground, const QColor& wanted, const QColor& otherwise, double contrast = kReadable);

}  // namespace qt
