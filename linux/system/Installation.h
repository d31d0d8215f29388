// Where the product's own files lie: found from where the program lies, so that the installed tree can be moved whole.
#pragma once

#include <string>
#include <string_view>

namespace linux {

// The path of a file or folder of the product: in its folder in the library folder that belongs to the program's, or,
// as in a build tree, beside the program's folder. The first of the two where neither exists. For programs; a plugin
// lies where another program loads it from.
std::string installedPath(std::string_view name);

// The pane's bundle: the one that TYPESLATE_PREFPANE names, else the product's own.
std::string paneBundlePath();

}  // namespace linux
