// How a line of text says that something is wrong: in red, with a warning sign before it, and as an alert to a screen
// reader.
#pragma once

#include <QColor>
#include <QLabel>
#include <QPixmap>

namespace qt {

// Gives the label that look, or takes it away. It follows the theme by itself. The label shows plain text, centred.
void setAlertTone(QLabel& label, bool isAlert);

// What that look is made of: a red that can be read on the palette's ground, and the sign, for a screen of that scale.
QColor alertColor(const QPalette& palette);
QPixmap warningSign(int extent, qreal scale, const QColor& color);

}  // namespace qt
