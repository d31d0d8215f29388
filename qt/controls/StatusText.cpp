#include "qt/controls/StatusText.h"

#include "qt/texts/ForeignText.h"

#include <QEvent>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace qt {

using namespace platform;

namespace {

constexpr int kLeastCharacters = 12;  // that a line has room for

// The toolkit takes a line that just fits for one that does not.
int heightOf(int lines, const QWidget& text) { return lines * text.fontMetrics().lineSpacing() + 2; }

}  // namespace

StatusText::StatusText(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
}

void StatusText::show(const QString& text) {
    const QString shown = shortened(text, kLongest);
    if (shown == toPlainText()) return;
    setPlainText(shown);
    fit();
}

QSize StatusText::sizeHint() const { return {minimumSizeHint().width(), heightOf(lines_, *this)}; }

QSize StatusText::minimumSizeHint() const {
    return {kLeastCharacters * fontMetrics().averageCharWidth(), heightOf(1, *this)};
}

void StatusText::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    fit();
}

void StatusText::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fit();
}

// One line more than are shown says that there is something to scroll; the keyboard can, too, then.
void StatusText::fit() {
    QTextLayout layout;
    const int lines = breakLines(layout, toPlainText(), *this, width(), kMostLines + 1);
    const bool scrolls = lines > kMostLines;
    setTextInteractionFlags(scrolls ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard
                                    : Qt::TextInteractionFlags(Qt::TextSelectableByMouse));
    setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::ClickFocus);
    if (std::exchange(lines_, std::clamp(lines, 1, kMostLines)) != lines_) updateGeometry();
}

void QtStatusText::setStringValue(std::string_view text, TextTone) { widget_.show(toQString(text)); }

void QtStatusText::setIntegerValue(std::int64_t number) { setStringValue(std::to_string(number), TextTone::Normal); }

Size QtStatusText::cellSizeForBounds(const Rect& bounds) const {
    return {bounds.size.width, double(widget_.sizeHint().height())};
}

}  // namespace qt
