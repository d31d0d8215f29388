// The fonts of the system and the sets that a user has made of them, as values.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// What an icon for the format tells; OpenType stands for outlines of the PostScript kind in an OpenType file.
enum class FontKind : std::uint8_t { Unknown, TrueType, OpenType, Variable, Type1, Bitmap };
inline constexpr std::size_t kFontKinds = 6;

enum class WritingSystem : std::uint8_t {
    Arabic,
    Armenian,
    Bengali,
    CanadianSyllabics,
    Cherokee,
    ChineseSimplified,
    ChineseTraditional,
    Cyrillic,
    Devanagari,
    Ethiopic,
    Georgian,
    Greek,
    Gujarati,
    Gurmukhi,
    Hebrew,
    Japanese,
    Kannada,
    Khmer,
    Korean,
    Lao,
    Latin,
    Malayalam,
    Mongolian,
    Myanmar,
    NKo,
    Odia,
    Sinhala,
    Syriac,
    Tamil,
    Telugu,
    Thaana,
    Thai,
    Tibetan,
    Tifinagh,
    Yi
};
inline constexpr std::size_t kWritingSystems = static_cast<std::size_t>(WritingSystem::Yi) + 1;
using WritingSystems = std::bitset<kWritingSystems>;

// One face of one file; of a variable font one for each style that it names. Texts are UTF-8 and may be empty.
struct FontFace {
    std::string family, style, fullName;
    std::string listedFamily;  // by which sets name it, whatever it is called above
    std::string postScriptName;
    std::string file;           // its path; any bytes
    std::uint32_t index = 0;    // in the file: the face in the lower 16 bits, the named style above them
    std::uint32_t version = 0;  // 16 bits before and 16 after the point; 0: unknown
    std::string foundry;
    int weight = 400;  // 1 to 1000, as in OpenType
    int width = 100;   // in per cent of the normal width
    int slant = 0;     // 0: upright
    FontKind kind = FontKind::Unknown;
    WritingSystems writingSystems;  // that it covers
    bool isSymbolic = false;        // pictures instead of letters
    bool canWriteItsName = true;    // it has all characters of its family's name
    bool isActive = true;  // false: it is there, but a font manager or the configuration keeps it from programs
};

// Whose set it is.
enum class SetOwner : std::uint8_t { FontManager, KDE, FontAgentPro, FontExplorerX, Suitcase };

struct FontSet {
    std::string name;
    SetOwner owner = SetOwner::FontManager;
    std::vector<std::string> families;  // by FontFace::listedFamily
    std::vector<FontSet> children;
};

// Either function may be called on any thread, and takes as long as reading the system's font caches or a few files.
class FontServices {
public:
    virtual ~FontServices() = default;
    // The faces in no order, with their names in that language ("de") where they have such. Those that are not active
    // are listed, too.
    virtual std::vector<FontFace> listFaces(std::string_view language) = 0;
    // In the user's order.
    virtual std::vector<FontSet> listSets() = 0;
};

}  // namespace platform
