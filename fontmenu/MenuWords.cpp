#include "fontmenu/MenuWords.h"

#include "platform/Localizable.h"

#include <algorithm>

using platform::localizable;

namespace fontmenu {
namespace {

// In the order of their numbers.
constexpr std::array<std::string_view, kGroups> kEnglish{
    localizable("Arabic"),
    localizable("Armenian"),
    localizable("Bengali"),
    localizable("Canadian Syllabics"),
    localizable("Cherokee"),
    localizable("Chinese (Simplified)"),
    localizable("Chinese (Traditional)"),
    localizable("Cyrillic"),
    localizable("Devanagari"),
    localizable("Ethiopic"),
    localizable("Georgian"),
    localizable("Greek"),
    localizable("Gujarati"),
    localizable("Gurmukhi"),
    localizable("Hebrew"),
    localizable("Japanese"),
    localizable("Kannada"),
    localizable("Khmer"),
    localizable("Korean"),
    localizable("Lao"),
    localizable("Latin"),
    localizable("Malayalam"),
    localizable("Mongolian"),
    localizable("Myanmar"),
    localizable("N’Ko"),
    localizable("Odia"),
    localizable("Sinhala"),
    localizable("Syriac"),
    localizable("Tamil"),
    localizable("Telugu"),
    localizable("Thaana"),
    localizable("Thai"),
    localizable("Tibetan"),
    localizable("Tifinagh"),
    localizable("Yi"),
    localizable("Chinese, Japanese, Korean"),
    localizable("Other Writing Systems"),
    localizable("Symbols"),
};
constexpr std::array<std::string_view, platform::kFontKinds> kKinds{"",         "TrueType", "OpenType",
                                                                    "Variable", "Type 1",   "Bitmap"};

}  // namespace

MenuWords menuWords(const Translation& translated) {
    MenuWords words{translated(localizable("All Fonts")), {}};
    std::ranges::transform(kEnglish, words.groups.begin(), translated);
    return words;
}

std::string_view nameOf(platform::FontKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

}  // namespace fontmenu
