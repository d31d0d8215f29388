#include "linux/fonts/LinuxFonts.h"

#include "linux/files/Paths.h"
#include "linux/files/WholeFile.h"
#include "linux/fonts/Coverage.h"
#include "linux/fonts/FontSetFiles.h"
#include "linux/texts/DisplayText.h"
#include "propertylist/Unicode.h"

#include <fontconfig/fontconfig.h>
#include <glib.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <span>
#include <string_view>
#include <unordered_set>
#include <utility>

using platform::FontFace;
using platform::FontKind;
using platform::FontSet;

namespace linux {
namespace {

// They have pictures where fonts have Latin letters, and nothing in them says so.
constexpr std::string_view kPicturesForLetters[] = {"D050000L", "Dingbats", "Standard Symbols PS",
                                                    "Standard Symbols L"};

constexpr std::uint32_t kFaceOfIndex = 0xFFFF;
// Far more than the largest machines have.
constexpr int kMostFaces = 200'000;

struct Deleter {
    void operator()(FcConfig* configuration) const { FcConfigDestroy(configuration); }
    void operator()(FcStrList* texts) const { FcStrListDone(texts); }
    void operator()(char* text) const { g_free(text); }
};
template <typename T>
using Owned = std::unique_ptr<T, Deleter>;

const FcChar8* bytes(const std::string& text) { return reinterpret_cast<const FcChar8*>(text.c_str()); }

std::string_view text(FcPattern* font, const char* object, int which = 0) {
    FcChar8* value = nullptr;
    if (FcPatternGetString(font, object, which, &value) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(value);
}

// The name in the language, else the first one, which is English where there is English.
std::string_view nameIn(std::string_view language, FcPattern* font, const char* object, const char* languageObject) {
    for (int i = 0; !language.empty() && !text(font, object, i).empty(); ++i)
        if (text(font, languageObject, i) == language) return text(font, object, i);
    return text(font, object);
}

int number(FcPattern* font, const char* object, int missing) {
    double value = 0;
    if (FcPatternGetDouble(font, object, 0, &value) != FcResultMatch || !std::isfinite(value)) return missing;
    return static_cast<int>(std::clamp(value, 0.0, 10'000.0));
}

int weightOf(FcPattern* font) {
    double value = 0;
    if (FcPatternGetDouble(font, FC_WEIGHT, 0, &value) != FcResultMatch) return FontFace().weight;
    double weight = FcWeightToOpenTypeDouble(value);
    return weight >= 1 && weight <= 1000 ? static_cast<int>(std::lround(weight)) : FontFace().weight;
}

FontKind kindOf(FcPattern* font) {
    struct Format {
        std::string_view name;
        FontKind kind;
    };
    static constexpr Format kFormats[] = {
        {"TrueType", FontKind::TrueType}, {"CFF", FontKind::OpenType},       {"Type 1", FontKind::Type1},
        {"CID Type 1", FontKind::Type1},  {"Type 42", FontKind::Type1},      {"PCF", FontKind::Bitmap},
        {"BDF", FontKind::Bitmap},        {"Windows FNT", FontKind::Bitmap},
    };
    const auto* found = std::ranges::find(kFormats, text(font, FC_FONTFORMAT), &Format::name);
    return found == std::end(kFormats) ? FontKind::Unknown : found->kind;
}

bool isTrue(FcPattern* font, const char* object) {
    FcBool value = FcFalse;
    return FcPatternGetBool(font, object, 0, &value) == FcResultMatch && value == FcTrue;
}

bool hasAll(const FcCharSet& characters, std::string_view validUTF8) {
    while (!validUTF8.empty()) {
        std::uint32_t c = propertylist::takeCodePoint(validUTF8);
        if (!propertylist::isWhiteSpace(c) && !FcCharSetHasChar(&characters, c)) return false;
    }
    return true;
}

void addCoverage(FcPattern* font, FontFace& face) {
    FcCharSet* characters = nullptr;
    if (FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) != FcResultMatch) return;
    FcLangSet* languages = nullptr;
    FcPatternGetLangSet(font, FC_LANG, 0, &languages);
    face.writingSystems = coverageOf(*characters, languages);
    const bool hasPictures = std::ranges::find(kPicturesForLetters, face.family) != std::end(kPicturesForLetters);
    if (hasPictures) face.writingSystems.reset();
    face.isSymbolic = hasPictures || isTrue(font, FC_SYMBOL) || isSymbolic(*characters, face.writingSystems);
    face.canWriteItsName = hasAll(*characters, face.family);
}

std::string whereItIs(const FontFace& face) { return face.file + '\0' + std::to_string(face.index & kFaceOfIndex); }

FontFace faceOf(FcPattern* font, std::string_view language) {
    FontFace face;
    face.file = text(font, FC_FILE);
    int index = 0, version = 0;
    FcPatternGetInteger(font, FC_INDEX, 0, &index);
    FcPatternGetInteger(font, FC_FONTVERSION, 0, &version);
    face.index = static_cast<std::uint32_t>(index);
    face.version = static_cast<std::uint32_t>(std::max(version, 0));
    face.listedFamily = displayText(text(font, FC_FAMILY));
    face.family = displayText(nameIn(language, font, FC_FAMILY, FC_FAMILYLANG));
    face.style = displayText(nameIn(language, font, FC_STYLE, FC_STYLELANG));
    face.fullName = displayText(nameIn(language, font, FC_FULLNAME, FC_FULLNAMELANG));
    face.foundry = displayText(text(font, FC_FOUNDRY));
    if (face.family.empty()) face.family = face.listedFamily = displayText(nameOf(face.file));
    face.weight = weightOf(font);
    face.width = number(font, FC_WIDTH, FontFace().width);
    face.slant = number(font, FC_SLANT, FontFace().slant);
    face.kind = kindOf(font);
    // For bitmaps, which have none, fontconfig makes one of the family, the same for all its faces.
    if (face.kind != FontKind::Bitmap) face.postScriptName = displayText(text(font, FC_POSTSCRIPT_NAME));
    addCoverage(font, face);
    return face;
}

std::vector<FontFace> facesOf(FcConfig& configuration, std::string_view language) {
    const FcFontSet* fonts = FcConfigGetFonts(&configuration, FcSetSystem);
    std::vector<FontFace> faces;
    std::unordered_set<std::string> variable;
    for (FcPattern* font : fonts ? std::span(fonts->fonts, static_cast<std::size_t>(std::min(fonts->nfont, kMostFaces)))
                                 : std::span<FcPattern*>()) {
        FontFace face = faceOf(font, language);
        if (face.file.empty()) continue;
        // Besides its styles a variable font is listed as a whole, which is no face to choose.
        if (isTrue(font, FC_VARIABLE))
            variable.insert(whereItIs(face));
        else
            faces.push_back(std::move(face));
    }
    for (FontFace& face : faces)
        if (variable.contains(whereItIs(face))) face.kind = FontKind::Variable;
    return faces;
}

std::string elements(const char* element, FcStrList* values) {
    Owned<FcStrList> list(values);
    std::string xml;
    while (const FcChar8* value = FcStrListNext(list.get())) {
        Owned<char> escaped(g_markup_escape_text(reinterpret_cast<const char*>(value), -1));
        xml.append("<").append(element).append(">").append(escaped.get()).append("</").append(element).append(">");
    }
    return xml;
}

// The same folders and caches without the rules that keep fonts from programs.
Owned<FcConfig> withoutRules(FcConfig& configuration) {
    std::string xml = "<fontconfig>" + elements("dir", FcConfigGetFontDirs(&configuration)) +
                      elements("cachedir", FcConfigGetCacheDirs(&configuration)) + "</fontconfig>";
    Owned<FcConfig> bare(FcConfigCreate());
    bool isRead = bare && FcConfigParseAndLoadFromMemory(bare.get(), bytes(xml), FcFalse);
    return isRead && FcConfigBuildFonts(bare.get()) ? std::move(bare) : nullptr;
}

std::vector<FontSet> readSets(const std::string& file, std::vector<FontSet> (*read)(std::string_view)) {
    std::string contents;
    if (readDescription(FileAccess::system(), AT_FDCWD, file.c_str(), contents)) return {};
    return read(contents);
}

}  // namespace

std::vector<FontFace> LinuxFonts::listFaces(std::string_view language) {
    Owned<FcConfig> configuration(FcInitLoadConfigAndFonts());
    if (!configuration) return {};
    std::vector<FontFace> faces = facesOf(*configuration, language);
    Owned<FcConfig> all = withoutRules(*configuration);
    if (!all) return faces;
    std::unordered_set<std::string> active;
    for (const FontFace& face : faces) active.insert(whereItIs(face));
    for (FontFace& face : facesOf(*all, language)) {
        if (active.contains(whereItIs(face))) continue;
        face.isActive = false;
        faces.push_back(std::move(face));
    }
    return faces;
}

std::vector<FontSet> LinuxFonts::listSets() {
    std::string folder = configurationFolder();
    std::vector<FontSet> sets = readSets(folder + "/font-manager/Collections.json", fontManagerCollections);
    std::ranges::move(readSets(folder + "/fontgroups.xml", kdeFontGroups), std::back_inserter(sets));
    return sets;
}

}  // namespace linux
