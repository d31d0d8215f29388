#include "qt/controls/QtControls.h"

#include "qt/controls/AlertTone.h"
#include "qt/controls/UserActions.h"
#include "qt/texts/ForeignText.h"

#include <QAccessible>
#include <QMetaMethod>
#include <QSignalBlocker>
#include <QTabBar>

#include <algorithm>
#include <limits>
#include <utility>

namespace qt {

using namespace platform;

namespace {

constexpr const char* kHideWhenEmpty = "hideWhenEmpty";
constexpr const char* kDescribes = "describes";

Size toSize(QSize size) { return {double(size.width()), double(size.height())}; }

QString withoutMnemonic(QString text) {
    static const QString kMark = QStringLiteral("&");
    for (int i = 0; (i = static_cast<int>(text.indexOf(kMark, i))) >= 0; ++i) text.remove(i, 1);
    return text;
}

}  // namespace

void QtButton::setState(bool on) {
    QSignalBlocker quiet(widget_);
    widget_.setChecked(on);
}

std::string QtButton::title() const { return withoutMnemonic(widget_.text()).toStdString(); }

// The designed tool tip, which a screen reader describes the button by, tells what the designed title does.
void QtButton::setTitle(std::string_view title) {
    QString text = toQString(title);
    const bool isDesigned = text == withoutMnemonic(designedText_);
    widget_.setText(isDesigned ? designedText_ : text);
    widget_.setToolTip(isDesigned ? designedToolTip_ : text);
}

// What the interface file names as the action hears of nothing any more either.
void QtButton::setTarget(InterfaceOwner* target, std::string_view selector) {
    const auto changed = widget_.isCheckable() ? QMetaMethod::fromSignal(&QAbstractButton::toggled)
                                               : QMetaMethod::fromSignal(&QAbstractButton::clicked);
    QObject::disconnect(&widget_, changed, nullptr, {});
    if (!target) return;
    onUserAction(widget_, widget_,
                 [this, target, name = std::string(selector)] { target->performAction(name, *this); });
}

QtLabel::QtLabel(QLabel& label) : WidgetView(label), designedAlignment_(label.alignment()), text_(label.text()) {
    if (label.property(kHideWhenEmpty).toBool()) label.setVisible(!label.text().isEmpty());
}

void QtLabel::setStringValue(std::string_view text, TextTone tone) {
    bool alert = tone == TextTone::Alert;
    QString given = toQString(text);
    bool changed = given != std::exchange(text_, given);
    QString shown = widget_.wordWrap() ? breakable(given) : given;
    widget_.setTextFormat(Qt::PlainText);  // names of files and applications are no markup
    widget_.setText(shown);
    setAlertTone(widget_, alert);
    widget_.setAlignment(alert ? Qt::Alignment(Qt::AlignCenter) : designedAlignment_);
    if (widget_.property(kHideWhenEmpty).toBool()) widget_.setVisible(!shown.isEmpty());
    if (changed) describeOther();
    if (alert && changed) {
        QAccessibleEvent event(&widget_, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
}

// Screen readers tell of a new description of what has the keyboard, and of a new text elsewhere they do not.
void QtLabel::describeOther() {
    const QString name = widget_.property(kDescribes).toString();
    if (name.isEmpty() || !widget_.parentWidget()) return;
    if (auto* other = widget_.parentWidget()->findChild<QWidget*>(name)) other->setAccessibleDescription(text_);
}

void QtLabel::setIntegerValue(std::int64_t number) { setStringValue(std::to_string(number), TextTone::Normal); }

void QtLabel::setSelectable(bool selectable) {
    constexpr auto kSelectable = Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
    widget_.setTextInteractionFlags(selectable ? Qt::TextInteractionFlags(kSelectable) : Qt::NoTextInteraction);
}

Size QtLabel::cellSizeForBounds(const Rect& bounds) const {
    if (!widget_.wordWrap()) return toSize(widget_.sizeHint());
    return {bounds.size.width, double(widget_.heightForWidth(static_cast<int>(bounds.size.width)))};
}

void QtLineEdit::setStringValue(std::string_view text, TextTone) {
    setProblem({});
    QSignalBlocker quiet(widget_);
    widget_.setText(toQString(text));
    widget_.setCursorPosition(0);
}

void QtLineEdit::setIntegerValue(std::int64_t number) { setStringValue(std::to_string(number), TextTone::Normal); }

void QtSpinBox::setStringValue(std::string_view text, TextTone) { setIntegerValue(toQString(text).toLongLong()); }

void QtSpinBox::setIntegerValue(std::int64_t number) {
    QSignalBlocker quiet(widget_);
    using Limits = std::numeric_limits<int>;
    int shown = static_cast<int>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
    widget_.setRange(std::min(designedMinimum_, shown), std::max(designedMaximum_, shown));
    widget_.setValue(shown);
}

// The number that was told of last is the box's value; what is being typed is only in its text.
bool QtSpinBox::isBeingEdited() const {
    bool isNumber = false;
    return widget_.locale().toInt(widget_.cleanText(), &isNumber) != widget_.value() || !isNumber;
}

void QtPopUpButton::selectItem(int index) {
    QSignalBlocker quiet(widget_);
    widget_.setCurrentIndex(index < widget_.count() ? index : -1);
}

void QtTabView::setControlTint(ControlTint tint) {
    QColor color;  // an invalid colour is the style's own
    if (tint == ControlTint::Clear) color = widget_.palette().color(QPalette::Disabled, QPalette::WindowText);
    for (int i = 0; i < widget_.count(); ++i) widget_.tabBar()->setTabTextColor(i, color);
}

}  // namespace qt
