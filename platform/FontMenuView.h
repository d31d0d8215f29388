// A font menu as a tree on the screen.
#pragma once

#include "platform/Controls.h"
#include "platform/Fonts.h"

namespace platform {

// What there is to make menus of, as it was when it was listed.
struct ListedFonts {
    std::vector<FontFace> faces;
    std::vector<FontSet> sets;
    std::vector<std::int64_t> modified;  // of each face, when its file was changed last; 0: unknown
    std::string interfaceFamily;         // of the window's own texts, as FontFace::listedFamily
};

struct FontMenuItem {
    enum class Kind : std::uint8_t { Face, Submenu, Title, Separator };
    enum class Drawing : std::uint8_t { Plain, InFace, SampleBeside };

    Kind kind = Kind::Separator;
    std::string title, detail;
    std::optional<std::uint32_t> face;  // its place among the listed faces
    bool isMarked = false;              // it is, or leads to, the font in use
    FontKind icon = FontKind::Unknown;  // Unknown: none
    Drawing drawing = Drawing::Plain;
    int size = 0;  // points; 0: the interface's own
    std::uint32_t copies = 1;
    bool isActive = true;
    std::vector<FontMenuItem> children;
};

class FontMenuView : public View {
public:
    FontMenuView* asFontMenuView() override { return this; }
    // What is unfolded and in sight stays so, where the new menu has it, too.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): for the implementation to keep
    virtual void setMenu(std::shared_ptr<const ListedFonts> /*fonts*/, std::vector<FontMenuItem> /*items*/) {}
    virtual void setPlaceholder(std::string_view) {}  // what is read where there is no menu
};

}  // namespace platform
