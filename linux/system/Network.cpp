#include "linux/system/Network.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

namespace linux {

namespace {

constexpr std::array<std::string_view, 4> kReservedNames = {".example", ".test", ".invalid", ".localhost"};

std::string_view hostOf(std::string_view url) {
    std::size_t start = url.find("://");
    if (start == std::string_view::npos) return {};
    url.remove_prefix(start + 3);
    return url.substr(0, url.find_first_of(":/?#"));
}

std::vector<std::string> words(const std::string& line) {
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), {}};
}

bool isZero(const std::string& digits) { return digits.find_first_not_of('0') == std::string::npos; }

// Interface, destination, gateway, flags, references, uses, metric, mask.
bool isDefaultRoute(const std::vector<std::string>& route) {
    return route.size() > 7 && isZero(route[1]) && isZero(route[7]);
}

// Destination, its prefix's length and eight more; the loopback interface holds routes that refuse.
bool isDefaultRoute6(const std::vector<std::string>& route) {
    return route.size() > 9 && isZero(route[0]) && isZero(route[1]) && route[9] != "lo";
}

bool hasRoute(std::ifstream& routes, bool (*isDefault)(const std::vector<std::string>& route)) {
    for (std::string line; std::getline(routes, line);)
        if (isDefault(words(line))) return true;
    return false;
}

}  // namespace

bool mayReach(std::string_view url, const std::string& netFolder) {
    std::string_view host = hostOf(url);
    if (std::ranges::any_of(kReservedNames, [&](std::string_view name) { return host.ends_with(name); })) return false;
    std::ifstream routes(netFolder + "/route"), routes6(netFolder + "/ipv6_route");
    return !routes || hasRoute(routes, isDefaultRoute) || hasRoute(routes6, isDefaultRoute6);
}

}  // namespace linux
