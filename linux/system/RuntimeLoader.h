// Finds and loads the injection runtime, which the pane then knows as the loaded bundle "com.tarnwick.plinth".
#pragma once

#include "linux/system/FolderBundle.h"
#include "platform/FileServices.h"

#include <memory>

namespace linux {

// Plinth.framework of the user's or the machine's Frameworks folder, else the library libplinth.so where the loader
// finds it. Null when there is none.
std::unique_ptr<platform::Bundle> loadRuntime(platform::FileServices& files);

}  // namespace linux
