// Text as a search compares it.
#pragma once

#include <QString>

namespace qt {

// Without case, accents and the other marks of a letter, and with what looks different only by its width or as a
// ligature made equal: a text is found within another when its key lies within the other's. Unicode's compatibility
// decomposition and case folding, and the German sharp s as "ss"; letters that are no letter with a mark (such as the
// Danish o with a stroke) stay.
QString searchKey(const QString& text);

}  // namespace qt
