#include "fontmenu/NameOrder.h"

#include "propertylist/ASCII.h"

#include <algorithm>

namespace fontmenu {
namespace {

// U+00C0 to U+00FF without their accents; in UTF-8 they are C3 and one of 80 to BF.
constexpr std::string_view kBaseLetters = "aaaaaaaceeeeiiiidnooooo*ouuuuytsaaaaaaaceeeeiiiidnooooo/ouuuuyty";

}  // namespace

std::string orderKey(std::string_view name) {
    std::string key;
    key.reserve(name.size() + 2);
    for (std::size_t i = 0; i < name.size(); ++i) {
        const unsigned char next = i + 1 < name.size() ? static_cast<unsigned char>(name[i + 1]) : 0;
        if (name[i] == '\xC3' && next >= 0x80 && next <= 0xBF) {
            key += kBaseLetters[next - 0x80u];
            ++i;
        } else if (propertylist::isASCIIDigit(name[i])) {
            std::size_t first = std::min(name.find_first_not_of('0', i), name.size());
            std::size_t end = std::min(name.find_first_not_of("0123456789", i), name.size());
            first = std::min(first, end - 1);
            // The longer number is the larger one; what stands for its length is a digit, too.
            key += static_cast<char>('0' + std::min<std::size_t>(end - first - 1, 9));
            key += name.substr(first, end - first);
            i = end - 1;
        } else {
            key += propertylist::lowerASCII(name[i]);
        }
    }
    return key;
}

}  // namespace fontmenu
