// A text that scrolls, plain or rich.
#pragma once

#include "qt/controls/Motion.h"
#include "qt/controls/WidgetView.h"

#include <QObject>
#include <QTextEdit>

namespace qt {

// Once the user has scrolled or selected, the text stays where the user put it until another one is loaded: what moves
// by itself can be stopped, and is not torn away from who reads it. It stays, too, while the user wants no animations.
class QtTextView final : public WidgetView<platform::TextView, QTextEdit> {
public:
    explicit QtTextView(QTextEdit& widget);  // gives it a document of its own
    platform::Rect frame() const override;
    void setString(std::string_view text) override { widget_.setPlainText(toQString(text)); }
    // Shows the folder's TXT.html, with pictures from the folder itself and from nowhere else: other files and
    // addresses are not opened, and what they would show is left out. Only what the toolkit knows of HTML has an
    // effect.
    bool loadRichText(std::string_view path) override;
    platform::Rect enclosingScrollViewFrame() const override { return frameOf(widget_); }
    void scrollPoint(const platform::Point& point) override;

private:
    class FolderDocument;

    FolderDocument& document_;  // the widget's
    QObject connections_;
    Motion motion_;
    bool isHeld_ = false;
};

}  // namespace qt
