// Buttons, fields, menus and tabs. Setters never cause an action: only the user's own changes do. None owns its widget.
#pragma once

#include "qt/controls/FieldProblem.h"
#include "qt/controls/WidgetView.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTabWidget>

namespace qt {

class QtButton final : public WidgetView<platform::Button, QAbstractButton> {
public:
    explicit QtButton(QAbstractButton& button)
        : WidgetView(button), designedText_(button.text()), designedToolTip_(button.toolTip()) {}
    bool state() const override { return widget_.isChecked(); }
    void setState(bool on) override;
    std::string title() const override;
    std::int64_t integerValue() const override { return state() ? 1 : 0; }
    void setTitle(std::string_view title) override;  // the designed one comes with its mnemonic and tip
    void setTag(int tag) override { widget_.setProperty("tag", tag); }
    void setTarget(platform::InterfaceOwner* target, std::string_view selector) override;

private:
    const QString designedText_, designedToolTip_;
};

// A label with the dynamic property "hideWhenEmpty" takes no room while it has no text. One with "describes", the name
// of a widget beside it, is that widget's accessible description.
class QtLabel final : public WidgetView<platform::TextField, QLabel> {
public:
    explicit QtLabel(QLabel& label);
    std::string stringValue() const override { return text_.toStdString(); }
    std::string title() const override { return stringValue(); }
    std::int64_t integerValue() const override { return text_.toLongLong(); }
    void setStringValue(std::string_view text, platform::TextTone tone) override;
    void setIntegerValue(std::int64_t number) override;
    void setSelectable(bool selectable) override;
    platform::Size cellSizeForBounds(const platform::Rect& bounds) const override;

private:
    void describeOther();

    Qt::Alignment designedAlignment_;
    QString text_;  // the label's has places to break at in long words
};

// Fields of one line ask for the width that they are given.
template <typename Widget>
class OneLineField : public WidgetView<platform::TextField, Widget> {
public:
    using WidgetView<platform::TextField, Widget>::WidgetView;
    platform::Size cellSizeForBounds(const platform::Rect& bounds) const override {
        return {bounds.size.width, double(this->widget_.sizeHint().height())};
    }
};

class QtLineEdit final : public OneLineField<QLineEdit> {
public:
    using OneLineField::OneLineField;
    void setProblem(std::string_view problem) override { showProblem(widget_, toQString(problem)); }
    std::string stringValue() const override { return widget_.text().toStdString(); }
    std::int64_t integerValue() const override { return widget_.text().toLongLong(); }
    void setStringValue(std::string_view text, platform::TextTone tone) override;
    void setIntegerValue(std::int64_t number) override;
};

// Takes numbers of its designed range from the user, and shows any other that it is given, too: until the next one the
// range reaches that far. What no int holds is shown as the nearest that one does.
class QtSpinBox final : public OneLineField<QSpinBox> {
public:
    explicit QtSpinBox(QSpinBox& box)
        : OneLineField(box), designedMinimum_(box.minimum()), designedMaximum_(box.maximum()) {}
    std::string stringValue() const override { return std::to_string(widget_.value()); }
    std::int64_t integerValue() const override { return widget_.value(); }
    void setStringValue(std::string_view text, platform::TextTone tone) override;  // what is no number counts as 0
    void setIntegerValue(std::int64_t number) override;
    bool isBeingEdited() const override;

private:
    const int designedMinimum_, designedMaximum_;
};

// The dynamic property "itemTags" is the list of the items' tags; an item without one has the tag 0.
class QtPopUpButton final : public WidgetView<platform::PopUpButton, QComboBox> {
public:
    using WidgetView::WidgetView;
    std::string title() const override { return widget_.currentText().toStdString(); }
    int selectedRow() const override { return widget_.currentIndex(); }
    std::int64_t integerValue() const override { return widget_.currentIndex(); }
    void selectItem(int index) override;
    std::string itemTitle(int index) const override { return widget_.itemText(index).toStdString(); }
    int itemCount() const override { return widget_.count(); }
    int itemTag(int index) const override { return widget_.property("itemTags").toStringList().value(index).toInt(); }
};

class QtTabView final : public WidgetView<platform::TabView, QTabWidget> {
public:
    using WidgetView::WidgetView;
    void setControlTint(platform::ControlTint tint) override;
};

using QtPlainView = WidgetView<platform::View, QWidget>;

}  // namespace qt
