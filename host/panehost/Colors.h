// The colours of a window whose toolkit does not take them from the desktop.
#pragma once

#include <QPalette>

namespace host {

struct ColorWish {
    bool isDark = false, hasContrast = false;
    QColor accent = {};  // of what is selected; invalid: the toolkit's own
    bool operator==(const ColorWish&) const = default;
};

// What of a palette is to be replaced for the wish: nothing for none. A palette that is dark stays dark, as it is.
QPalette replacedColors(const QPalette& own, const ColorWish& wish);

}  // namespace host
