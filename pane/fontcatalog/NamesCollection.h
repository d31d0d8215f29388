#pragma once

#include "platform/PlatformTypes.h"

namespace fontcatalog {

// Font records, dictionaries from string to string, by PostScript name.
using NamesCollection = platform::MutableDictionary;

}  // namespace fontcatalog
