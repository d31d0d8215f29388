#include "qt/texts/SearchKey.h"

#include <QVector>

#include <algorithm>

namespace qt {

QString searchKey(const QString& text) {
    // Most names are plain, and decomposing costs several times as much.
    if (std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; })) return text.toLower();
    auto letters = text.normalized(QString::NormalizationForm_KD).toUcs4();
    letters.erase(std::remove_if(letters.begin(), letters.end(), [](char32_t c) { return QChar::isMark(c); }),
                  letters.end());
    const auto* first = reinterpret_cast<const char32_t*>(letters.constData());
    // The toolkit folds letter by letter only.
    return QString::fromUcs4(first, letters.size()).toCaseFolded().replace(QChar(0xDF), QStringLiteral("ss"));
}

}  // namespace qt
