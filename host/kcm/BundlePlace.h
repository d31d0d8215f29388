// Where the pane's bundle is.
#pragma once

#include <string>

namespace kcm {

// What TYPESLATE_PREFPANE says, else the bundle that was installed together with this plugin.
std::string bundlePlace();

}  // namespace kcm
