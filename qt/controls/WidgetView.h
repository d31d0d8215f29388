// What every wrapper of a widget shares. A wrapper does not own its widget and must not be used after it.
#pragma once

#include "platform/Controls.h"
#include "qt/controls/DifferenceMark.h"
#include "qt/texts/Utf8.h"

#include <QVariant>
#include <QWidget>

namespace qt {

class HasWidget {
public:
    virtual ~HasWidget() = default;
    virtual QWidget* qWidget() const = 0;
};

// The widget behind a view that this toolkit made; null for any other.
QWidget* widgetOf(platform::View* view);

// A label that names the widget follows it.
void setEnabledWithLabel(QWidget& widget, bool enabled);

// Whether it was hidden by name, not by what surrounds it.
bool isHiddenItself(const QWidget& widget);
// Puts another widget into the first one's place in its parent and the parent's layout, and hides the first. Nothing
// happens to one that has no parent.
void replaceWidget(QWidget& widget, QWidget* other);
platform::Panel* panelAround(const QWidget& widget);  // null when the widget's window is no panel's

// In points from the lower left corner of the parent; of a window, from its own.
platform::Rect frameOf(const QWidget& widget);
void setFrameOf(QWidget& widget, const platform::Rect& frame);

template <typename Base, typename Widget>
class WidgetView : public Base, public HasWidget {
public:
    explicit WidgetView(Widget& widget) : widget_(widget) {}
    QWidget* qWidget() const override { return &widget_; }

    // The control's own state, whatever the state of what surrounds it.
    bool isEnabled() const override { return !widget_.testAttribute(Qt::WA_ForceDisabled); }
    void setEnabled(bool enabled) override { setEnabledWithLabel(widget_, enabled); }
    void setToolTip(std::string_view text) override { widget_.setToolTip(toQString(text)); }
    platform::Rect frame() const override { return frameOf(widget_); }
    void setFrame(const platform::Rect& frame) override { setFrameOf(widget_, frame); }
    bool isHidden() const override { return isHiddenItself(widget_); }
    void setHidden(bool hidden) override { widget_.setHidden(hidden); }
    void setNeedsDisplay() override { widget_.update(); }
    void setMark(const std::optional<platform::ControlMark>& mark) override { setDifferenceMark(widget_, mark); }
    void display() override { widget_.repaint(); }
    void replaceInSuperview(platform::View& other) override { replaceWidget(widget_, widgetOf(&other)); }
    void takeFocus() override { widget_.setFocus(Qt::OtherFocusReason); }
    platform::Panel* panel() override { return panelAround(widget_); }
    int tag() const override { return widget_.property("tag").toInt(); }

protected:
    Widget& widget_;
};

}  // namespace qt
