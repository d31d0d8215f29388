#include "linux/fonts/Coverage.h"

#include <algorithm>
#include <string_view>

using platform::WritingSystem;

namespace linux {
namespace {

struct Letters {
    WritingSystem system;
    std::u32string_view needed;
};

// Greek and Cyrillic with letters that mathematical and symbol fonts lack.
constexpr Letters kLetters[] = {
    {WritingSystem::Arabic, U"ابتجيه"},    {WritingSystem::Armenian, U"ԱԲաբֆ"},
    {WritingSystem::Bengali, U"অকখগয"},    {WritingSystem::CanadianSyllabics, U"ᐁᐃᐅᐊᒪ"},
    {WritingSystem::Cherokee, U"ᎠᎡᎢᎣᏓ"},   {WritingSystem::Cyrillic, U"АЖЯажя"},
    {WritingSystem::Devanagari, U"अकखगय"}, {WritingSystem::Ethiopic, U"ሀለመሠረ"},
    {WritingSystem::Georgian, U"აბგდჰ"},   {WritingSystem::Greek, U"ΑΩαάώς"},
    {WritingSystem::Gujarati, U"અકખગય"},   {WritingSystem::Gurmukhi, U"ਅਕਖਗਯ"},
    {WritingSystem::Hebrew, U"אבגשת"},     {WritingSystem::Kannada, U"ಅಕಖಗಯ"},
    {WritingSystem::Khmer, U"កខគឃអ"},      {WritingSystem::Lao, U"ກຂຄງຮ"},
    {WritingSystem::Latin, U"AMZamz"},     {WritingSystem::Malayalam, U"അകഖഗയ"},
    {WritingSystem::Mongolian, U"ᠠᠡᠢᠣᠤ"},  {WritingSystem::Myanmar, U"ကခဂဃအ"},
    {WritingSystem::NKo, U"ߊߋߌߍߎ"},        {WritingSystem::Odia, U"ଅକଖଗଯ"},
    {WritingSystem::Sinhala, U"අකඛගය"},    {WritingSystem::Syriac, U"ܐܒܓܕܬ"},
    {WritingSystem::Tamil, U"அகஙசய"},      {WritingSystem::Telugu, U"అకఖగయ"},
    {WritingSystem::Thaana, U"ހށނރބ"},     {WritingSystem::Thai, U"กขคงฮ"},
    {WritingSystem::Tibetan, U"ཀཁགངཨ"},    {WritingSystem::Tifinagh, U"ⴰⴱⴳⴷⵣ"},
    {WritingSystem::Yi, U"ꀀꀁꀂꀃꀄ"},
};

struct Languages {
    WritingSystem system;
    const char* language;
};
constexpr Languages kLanguages[] = {
    {WritingSystem::Japanese, "ja"},
    {WritingSystem::Korean, "ko"},
    {WritingSystem::ChineseSimplified, "zh-cn"},
    {WritingSystem::ChineseTraditional, "zh-tw"},
    {WritingSystem::ChineseTraditional, "zh-hk"},
};

// An arrow, a sum, a pencil, a smile of either kind, and where fonts put what has no character.
constexpr std::u32string_view kPictures = U"→∑✏☺😀\uF021\uF041\uE000";

void add(platform::WritingSystems& systems, WritingSystem system) { systems.set(static_cast<std::size_t>(system)); }

}  // namespace

platform::WritingSystems coverageOf(const FcCharSet& characters, const FcLangSet* languages) {
    auto has = [&](char32_t c) { return FcCharSetHasChar(&characters, c) == FcTrue; };
    platform::WritingSystems systems;
    for (const Letters& letters : kLetters)
        if (std::ranges::all_of(letters.needed, has)) add(systems, letters.system);
    for (const Languages& each : kLanguages)
        if (languages && FcLangSetHasLang(languages, reinterpret_cast<const FcChar8*>(each.language)) == FcLangEqual)
            add(systems, each.system);
    return systems;
}

bool isSymbolic(const FcCharSet& characters, const platform::WritingSystems& covered) {
    return covered.none() &&
           std::ranges::any_of(kPictures, [&](char32_t c) { return FcCharSetHasChar(&characters, c) == FcTrue; });
}

}  // namespace linux
