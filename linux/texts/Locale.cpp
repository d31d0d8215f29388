#include "linux/texts/Locale.h"

#include <cstdlib>

namespace linux {

std::string_view localeOf(const char* category) {
    for (const char* name : {"LC_ALL", category, "LANG"})
        if (const char* value = std::getenv(name); value && *value) return value;
    return {};
}

}  // namespace linux
