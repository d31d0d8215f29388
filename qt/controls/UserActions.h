// What the user changes in a control, by whatever means: mouse, keyboard, wheel, or an assistive tool that asks the
// control to toggle or to take a value.
#pragma once

#include <QObject>
#include <QWidget>

#include <functional>

namespace qt {

// From now until the context goes, perform is called once for each change of a check box, radio button, menu or number
// field, each choice from a menu, each click of a push button and each Return in a line of text. A number counts as
// changed once it is entered. Of the radio buttons of a group the one that is turned on tells, the others do not.
// Other widgets are left alone. Who changes a control by code blocks its signals, and nobody is called.
void onUserAction(QWidget& widget, QObject& context, std::function<void()> perform);

// A menu or number field has the wheel to itself only while it has the keyboard: otherwise a page that is scrolled
// would change what comes to lie under the pointer. A menu shows what an assistive tool picks from its list. Other
// widgets are left alone.
void takeEveryInput(QWidget& widget);

}  // namespace qt
