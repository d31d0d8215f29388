// A line of text by which a list beside it is searched.
#pragma once

#include <QLineEdit>

#include <functional>

namespace qt {

// From now until the context goes, perform is called for each change of the text, by whatever means, and when the line
// gets the keyboard. Escape empties the
// line; up, down, page up and page down move in the list without taking the keyboard there, and Return takes it there.
// The line has a button that empties it as soon as there is something to empty.
void makeSearchField(QLineEdit& line, QWidget& list, QObject& context, const std::function<void()>& perform);

}  // namespace qt
