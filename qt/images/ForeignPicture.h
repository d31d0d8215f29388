// Pictures that came with an application of anyone's: whether the toolkit may be let at a file's bytes.
#pragma once

#include <QByteArray>
#include <QString>

class QImageReader;

namespace qt {

// Drawings (SVG) may name other files, which the toolkit opens, a pipe that nobody writes into among them, and may
// repeat a part so often that painting them never ends. True when this one does neither. Compressed ones are not.
bool isHarmlessDrawing(const QByteArray& svg);

// Makes the reader read this file: as PNG where it is one, else as what the toolkit takes it for, which loads every
// image plug-in there is.
void openPicture(QImageReader& reader, const QString& path);

// Whether a picture of any name can be shown: no larger than kLargestPicture, and if it is a drawing, harmless.
bool isHarmlessPicture(const QString& path);

inline constexpr int kLargestPicture = 4096;        // pixels, each way
inline constexpr qint64 kLargestDrawing = 1 << 22;  // bytes
inline constexpr int kMostRepetitions = 32;         // "use" elements of a drawing

}  // namespace qt
