// What the toolkit lists fonts by.
#pragma once

#include "platform/FontMenuView.h"

#include <functional>

namespace host {

// Lists the fonts that programs of this computer use, with their names in the user's language, and the user's sets. Any
// thread may call it. Null where this was built without what lists fonts.
std::function<platform::ListedFonts()> fontLister();

}  // namespace host
