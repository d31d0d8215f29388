#include "linux/processes/ApplicationUnits.h"

#include "propertylist/ASCII.h"

#include <algorithm>
#include <charconv>

namespace linux {

namespace {

constexpr std::string_view kScope = ".scope", kService = ".service";

bool take(std::string_view prefix, std::string_view& text) {
    if (!text.starts_with(prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

// As systemd writes what a unit's name cannot have: "\x2d" is "-".
std::string unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const char* digits = text.data() + i + 2;
        if (text.substr(i).starts_with("\\x") && i + 4 <= text.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            plain += static_cast<char>(byte);
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

// "snap.firefox.firefox-5b2f0c39-0e6c-4a1f-8f5d-1d0a7c9b3e11.scope" is the entry "firefox_firefox".
std::string snapApplication(std::string_view unit) {
    constexpr std::size_t kRandomEnd = 37;
    std::size_t dot = unit.find('.');
    if (!unit.ends_with(kScope) || unit.size() <= dot + kRandomEnd + kScope.size()) return {};
    unit.remove_suffix(kRandomEnd + kScope.size());
    return std::string(unit.substr(0, dot)).append("_").append(unit.substr(dot + 1));
}

}  // namespace

std::string applicationOfControlGroup(std::string_view controlGroup) {
    std::string_view unit = propertylist::trimmedASCII(controlGroup);
    unit = unit.substr(unit.rfind('/') + 1);
    if (take("snap.", unit)) return snapApplication(unit);
    if (!take("app-", unit)) return {};
    if (unit.ends_with(kScope))
        unit = unit.substr(0, unit.rfind('-'));
    else if (unit.ends_with(kService))
        unit = unit.substr(0, std::min(unit.find('@'), unit.size() - kService.size()));
    else
        return {};
    return unescaped(unit.substr(unit.rfind('-') + 1));
}

}  // namespace linux
