#include "host/panehost/Colors.h"

#include "qt/controls/Contrast.h"

namespace host {
namespace {

constexpr auto kTexts = {QPalette::WindowText, QPalette::Text, QPalette::ButtonText};

QPalette darkPalette() {
    const QColor window(0x2a, 0x2e, 0x32), base(0x1f, 0x23, 0x26), text(0xf4, 0xf5, 0xf6), grey(0x8d, 0x96, 0x9e);
    QPalette palette(QColor(0x31, 0x36, 0x3b), window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    for (auto role : kTexts) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, grey.darker(112));
    }
    palette.setColor(QPalette::PlaceholderText, grey);
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x7f, 0xb8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb8, 0xf0));
    return palette;
}

bool isDark(const QPalette& palette) { return palette.color(QPalette::Window).lightness() < 128; }

// Letters as black or white as there are, and pale ones that can be read.
void raiseContrast(QPalette& replaced, const QPalette& seen) {
    const QColor farthest = isDark(seen) ? Qt::white : Qt::black;
    const QColor window = seen.color(QPalette::Window), base = seen.color(QPalette::Base);
    for (auto role : kTexts) {
        replaced.setColor(role, farthest);
        replaced.setColor(QPalette::Disabled, role,
                          qt::readableOn(window, seen.color(QPalette::Disabled, role), farthest));
    }
    replaced.setColor(QPalette::PlaceholderText,
                      qt::readableOn(base, seen.color(QPalette::PlaceholderText), farthest, 7));
}

// White letters are read on it, and it differs from what is not selected.
void setAccent(QPalette& replaced, const QPalette& seen, const QColor& accent) {
    constexpr double kSeen = 1.6;
    const QColor visible = qt::readableOn(seen.color(QPalette::Base), accent, seen.color(QPalette::Text), kSeen);
    const QColor selection = qt::readableOn(Qt::white, visible, Qt::black);
    replaced.setColor(QPalette::Highlight, selection);
    replaced.setColor(QPalette::HighlightedText, Qt::white);
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    replaced.setColor(QPalette::Accent, selection);
#endif
}

}  // namespace

QPalette replacedColors(const QPalette& own, const ColorWish& wish) {
    const bool turnsDark = wish.isDark && !isDark(own);
    QPalette replaced = turnsDark ? darkPalette() : QPalette();
    const QPalette seen = turnsDark ? replaced : own;
    if (wish.hasContrast) raiseContrast(replaced, seen);
    if (wish.accent.isValid()) setAccent(replaced, seen, wish.accent);
    return replaced;
}

}  // namespace host
