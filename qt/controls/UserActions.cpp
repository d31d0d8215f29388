#include "qt/controls/UserActions.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QButtonGroup>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QSpinBox>
#include <QTimer>

#include <memory>
#include <utility>

namespace qt {

namespace {

using Perform = std::function<void()>;

bool isOneOfSeveral(const QAbstractButton& button) {
    return button.group() ? button.group()->exclusive() : button.autoExclusive();
}

// An assistive tool toggles without a click.
void connectButton(QAbstractButton& button, QObject& context, const Perform& perform) {
    if (!button.isCheckable()) return void(QObject::connect(&button, &QAbstractButton::clicked, &context, perform));
    QObject::connect(&button, &QAbstractButton::toggled, &context, [&button, perform](bool isOn) {
        if (isOn || !isOneOfSeveral(button)) perform();
    });
}

// Mouse, keyboard and wheel activate an item, be it another or the same; an assistive tool just changes the choice.
void connectMenu(QComboBox& menu, QObject& context, const Perform& perform) {
    auto isTold = std::make_shared<bool>(false);
    QObject::connect(&menu, QOverload<int>::of(&QComboBox::currentIndexChanged), &context, [&menu, isTold, perform] {
        *isTold = true;  // of the activation that follows at once, if any does
        QTimer::singleShot(0, &menu, [isTold] { *isTold = false; });
        perform();
    });
    QObject::connect(&menu, QOverload<int>::of(&QComboBox::activated), &context, [isTold, perform] {
        if (!std::exchange(*isTold, false)) perform();
    });
}

// A text that comes while the keyboard is elsewhere is an assistive tool's: nothing else would enter it.
void connectNumber(QSpinBox& box, QObject& context, const Perform& perform) {
    box.setKeyboardTracking(false);  // one action for a number, not one for each digit
    QObject::connect(&box, QOverload<int>::of(&QSpinBox::valueChanged), &context, perform);
    if (auto* line = box.findChild<QLineEdit*>())
        QObject::connect(line, &QLineEdit::textChanged, &context, [&box] {
            if (!box.hasFocus()) box.interpretText();
        });
}

// An assistive tool that picks an item of the list selects it there, and no more. Mouse and keyboard, for which the
// list has to be open, move to what they select.
void takeSelectionAsChoice(QComboBox& menu) {
    QAbstractItemView* list = menu.view();
    QObject::connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, &menu, [&menu, list] {
        QTimer::singleShot(0, &menu, [&menu, list, wasOpen = list->isVisible()] {
            const QModelIndex picked = list->selectionModel()->selectedIndexes().value(0);
            const bool mayBeMovedTo = wasOpen || list->isVisible();
            if (!picked.isValid() || (mayBeMovedTo && picked == list->currentIndex())) return;
            if (picked.row() == menu.currentIndex()) return;
            menu.setCurrentIndex(picked.row());
            menu.hidePopup();
        });
    });
}

class WheelFilter final : public QObject {
public:
    using QObject::QObject;

private:
    // An event that is ignored goes on to what lies around the widget.
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() != QEvent::Wheel || static_cast<QWidget*>(object)->hasFocus()) return false;
        event->ignore();
        return true;
    }
};

}  // namespace

void onUserAction(QWidget& widget, QObject& context, Perform perform) {
    if (auto* button = qobject_cast<QAbstractButton*>(&widget)) return connectButton(*button, context, perform);
    if (auto* menu = qobject_cast<QComboBox*>(&widget)) return connectMenu(*menu, context, perform);
    if (auto* box = qobject_cast<QSpinBox*>(&widget)) return connectNumber(*box, context, perform);
    if (auto* edit = qobject_cast<QLineEdit*>(&widget))
        QObject::connect(edit, &QLineEdit::returnPressed, &context, perform);
}

void takeEveryInput(QWidget& widget) {
    auto* menu = qobject_cast<QComboBox*>(&widget);
    if (menu) takeSelectionAsChoice(*menu);
    if (!menu && !qobject_cast<QAbstractSpinBox*>(&widget)) return;
    widget.setFocusPolicy(Qt::StrongFocus);  // the wheel shall not bring the keyboard either
    widget.installEventFilter(new WheelFilter(&widget));
}

}  // namespace qt
