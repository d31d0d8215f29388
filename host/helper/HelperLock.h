// That a user has one helper.
#pragma once

#include "linux/files/FileAccess.h"

namespace helper {

// Held to the end of the object, and of the process at the latest. Not valid while another process holds it.
linux::Descriptor takeHelperLock();

}  // namespace helper
