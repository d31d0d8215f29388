#pragma once

#include "platform/PlatformTypes.h"

namespace fontcatalog {

// Font records, dictionaries from string to string, by PostScript name, in the order in which the names came first.
// What the readers put in keeps the text of its file in memory.
using NamesCollection = platform::MutableDictionary;

}  // namespace fontcatalog
