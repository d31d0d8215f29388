// Texts that others have written, made fit to be shown: names, paths, the words of an updater. However long they are
// and whatever they are made of, they cost bounded time and make no window wider or higher.
#pragma once

#include <QString>
#include <QTextLayout>

namespace qt {

// At most so many characters of the text, and an ellipsis for the rest. No character is cut in two.
QString shortened(const QString& text, int most);

// The text in one line that runs as its letters do: control characters and line ends become blanks, characters that
// turn the writing round are left out.
QString asOneLine(QString text);

// The text with invisible places to break at within its long words, for what breaks its lines between words only and
// asks for the width of the longest.
QString breakable(const QString& text);

// Lays the text out in lines of the width, which are broken anywhere where a word alone does not fit, and stops after
// so many. Returns the number of lines.
int breakLines(QTextLayout& layout, const QString& text, const QWidget& shownBy, int width, int most);

}  // namespace qt
