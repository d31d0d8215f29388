// What an import would do, in a sheet: entries to be added, in conflict and equal, with a decision for each conflict or
// for all, and the whole list's replacement as another way. Fit for as many entries as a document may hold.
#pragma once

#include "platform/Bundle.h"
#include "platform/ImportSheet.h"

#include <functional>
#include <optional>

class QWidget;

namespace qt {

// Opens it on the window. The handler is called once; nothing: the user cancelled. Texts come from the bundle's
// localised strings, in English without one.
void openImportSheet(QWidget* window, platform::ImportRequest request, const platform::Bundle* texts,
                     std::function<void(const std::optional<platform::ImportAnswer>&)> didEnd);

}  // namespace qt
