// A text that scrolls, plain or rich.
#pragma once

#include "qt/controls/WidgetView.h"

#include <QObject>
#include <QTextEdit>

namespace qt {

// Once the user has scrolled or selected, the text stays where the user put it until another one is loaded: what moves
// by itself can be stopped, and is not torn away from who reads it.
class QtTextView final : public WidgetView<platform::TextView, QTextEdit> {
public:
    // In bytes; the rest is left out. The toolkit hangs on a layout of more than 8 million pixels, which a text of this
    // length cannot have: the reader's largest sizes and gaps see to that, even with one letter on each line.
    static constexpr int kLongestRichText = 64 << 10;

    explicit QtTextView(QTextEdit& widget);
    platform::Rect frame() const override;
    void setString(std::string_view text) override { widget_.setPlainText(toQString(text)); }
    bool loadRichText(std::string_view path) override;
    platform::Rect enclosingScrollViewFrame() const override { return frameOf(widget_); }
    void scrollPoint(const platform::Point& point) override;

private:
    QObject connections_;
    bool isHeldByUser_ = false;
};

}  // namespace qt
