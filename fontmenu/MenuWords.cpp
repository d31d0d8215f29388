#include "fontmenu/MenuWords.h"

#include <algorithm>

namespace fontmenu {
namespace {

// In the order of their numbers.
constexpr std::array<std::string_view, kGroups> kEnglish{
    "Arabic",
    "Armenian",
    "Bengali",
    "Canadian Syllabics",
    "Cherokee",
    "Chinese (Simplified)",
    "Chinese (Traditional)",
    "Cyrillic",
    "Devanagari",
    "Ethiopic",
    "Georgian",
    "Greek",
    "Gujarati",
    "Gurmukhi",
    "Hebrew",
    "Japanese",
    "Kannada",
    "Khmer",
    "Korean",
    "Lao",
    "Latin",
    "Malayalam",
    "Mongolian",
    "Myanmar",
    "N’Ko",
    "Odia",
    "Sinhala",
    "Syriac",
    "Tamil",
    "Telugu",
    "Thaana",
    "Thai",
    "Tibetan",
    "Tifinagh",
    "Yi",
    "Chinese, Japanese, Korean",
    "Other Writing Systems",
    "Symbols",
};
constexpr std::array<std::string_view, platform::kFontKinds> kKinds{"",         "TrueType", "OpenType",
                                                                    "Variable", "Type 1",   "Bitmap"};

}  // namespace

MenuWords menuWords(const Translation& translated) {
    MenuWords words{translated("All Fonts"), {}};
    std::ranges::transform(kEnglish, words.groups.begin(), translated);
    return words;
}

std::string_view nameOf(platform::FontKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

}  // namespace fontmenu
