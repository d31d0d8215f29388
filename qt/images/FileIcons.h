// Icons of files: pictures read from them, and the icons under which the desktop shows them.
#pragma once

#include <QIcon>
#include <QString>

namespace qt {

// Null when the file cannot be read as an image, or is none that is harmless (ForeignPicture.h). Reads what Qt's image
// plug-ins read, SVG, and icon containers.
QIcon iconOfImageFile(const QString& path);

// A theme's icon, or the image file at an absolute path. Null when there is none.
QIcon iconNamed(const QString& name);

// The icon of the file's kind, told from its name; that of programs when the theme has none. Never null.
QIcon iconOfFile(const QString& path);

// The theme's icon for programs, or one of our own where the theme has none.
QIcon iconOfPrograms();

}  // namespace qt
