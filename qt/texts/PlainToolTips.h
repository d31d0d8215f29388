// Tool tips that show texts as they are. The toolkit takes a text that looks like markup for markup, and markup may
// name files to open: a name or a status that someone else has written must not.
#pragma once

#include <QWidget>

namespace qt {

// From now on the tool tips of the widget and of all that are in it, and of the rows of the views among them, are
// plain, and of a size that fits on a screen. Widgets that come later need a call of their own.
void showPlainToolTips(QWidget& widget);

}  // namespace qt
