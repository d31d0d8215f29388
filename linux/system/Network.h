// Whether there is a way to the web.
#pragma once

#include <string>
#include <string_view>

namespace linux {

// False where an address surely leads nowhere: this computer has no default route (netFolder/route and ipv6_route, as
// the kernel writes them), or the host's name is one that is set aside for examples and tests (RFC 2606). Asks nobody
// on the network, so true promises nothing; true also where the kernel does not tell.
bool mayReach(std::string_view url, const std::string& netFolder = "/proc/self/net");

}  // namespace linux
