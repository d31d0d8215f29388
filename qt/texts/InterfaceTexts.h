// The texts of an interface file in the user's language.
#pragma once

#include "platform/Bundle.h"

#include <QObject>

namespace qt {

// Replaces every text that the widget or action itself shows or tells a screen reader, items and columns included, by
// the bundle's localised string for it. To be called before anything else has set one of them.
void showInUsersLanguage(QObject& object, const platform::Bundle& texts);

}  // namespace qt
