// How a line of text says that something is wrong: in red, with a warning sign before it, and as an alert to a screen
// reader.
#pragma once

#include <QLabel>

namespace qt {

// Gives the label that look, or takes it away. It follows the theme by itself. The label shows plain text, centred.
void setAlertTone(QLabel& label, bool isAlert);

}  // namespace qt
