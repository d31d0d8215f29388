// The chooser of applications: the installed ones by name and icon, a search field, the running ones by themselves, and
// a way to look elsewhere on the disk. docs/applications.md tells how it is used and why so.
#pragma once

#include "platform/Bundle.h"
#include "platform/InterfaceToolkit.h"
#include "qt/sheets/ApplicationModel.h"

#include <QIcon>
#include <QString>

#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace qt {

// Opens it as a sheet on the window. Icons are asked for only as rows come into view. The handler is called once, with
// the paths chosen, empty when the user cancelled. Texts come from the bundle's localised strings, in English without
// one.
void openApplicationChooser(QWidget* window, const platform::OpenPanelRequest& request,
                            std::vector<ChoosableApplication> applications,
                            std::function<QIcon(const std::string& path)> iconOf, const platform::Bundle* texts,
                            std::function<void(std::vector<std::string> paths)> didEnd);

}  // namespace qt
