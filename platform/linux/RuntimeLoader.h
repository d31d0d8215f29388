// Finds and loads the injection runtime, which the pane then knows as the loaded bundle "com.tarnwick.plinth".
#pragma once

#include "platform/FileServices.h"
#include "platform/linux/FolderBundle.h"

#include <memory>

namespace platform::posix {

// Plinth.framework of the user's or the machine's Frameworks folder, else the library libplinth.so where the loader
// finds it. Null when there is none.
std::unique_ptr<Bundle> loadRuntime(FileServices& files);

}  // namespace platform::posix
