// Choosing applications anywhere on the disk: desktop entries, and ".app" folders as if they were files.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace qt {

struct AnywhereTexts {
    QString title, applications, allFiles;  // the latter with their patterns
};

// Opens it as a sheet on the window, in `folder` or, where there is none, in the folder of the system's desktop
// entries. A folder "X.app" with a description inside (Contents/Info.plist) is chosen whole, by a double click or by
// its name, and never entered; of a file within one the folder is chosen, but a desktop entry is always itself. The
// handler is called once with the absolute paths chosen, and not at all when the user cancels.
void openAnywhereChooser(QWidget* window, const QString& folder, const AnywhereTexts& texts,
                         std::function<void(const QStringList& paths)> didChoose);

}  // namespace qt
