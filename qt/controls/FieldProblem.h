// How a line for typing says that it cannot stay as it is: by a red frame, and by a warning sign in it whose tool tip
// tells why. A screen reader says it as the field's description.
#pragma once

#include <QLineEdit>

namespace qt {

// The mark goes by itself when the text changes; an empty problem takes it away at once.
void showProblem(QLineEdit& field, const QString& problem);

}  // namespace qt
