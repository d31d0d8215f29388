#include "qt/fontmenu/FontMenuSamples.h"

#include <array>

namespace qt {

using platform::WritingSystem;

namespace {

// In the order of platform::WritingSystem: a word or the first letters.
constexpr std::array<const char*, platform::kWritingSystems> kSamples{
    "أبجد", "Աբգդ", "কখগ",  "ᐃᓄᒃ",    "ᏣᎳᎩ", "汉字", "漢字", "Абвг", "देवनाग", "ግዕዝ", "აბგდ", "Αβγδ",
    "કખગ",  "ਕਖਗ",  "אבגד", "あア亜", "ಕಖಗ", "កខគ",  "한글", "ກຂຄ",  "Abcd",  "കഖഗ", "ᠮᠣᠩ",  "ကခဂ",
    "ߒߞߏ",  "କଖଗ",  "කඛග",  "ܐܒܓ",    "கஙச", "కఖగ",  "ހށނ",  "กขค",  "བོད",    "ⵜⵉⴼ", "ꆈꌠ",
};

}  // namespace

std::string sampleFor(const platform::FontFace& face) {
    if (face.isSymbolic) return {};
    constexpr auto kLatin = static_cast<std::size_t>(WritingSystem::Latin);
    for (std::size_t i = 0; i < kSamples.size(); ++i)
        if (i != kLatin && face.writingSystems[i]) return kSamples[i];
    return face.writingSystems[kLatin] ? kSamples[kLatin] : "";
}

}  // namespace qt
