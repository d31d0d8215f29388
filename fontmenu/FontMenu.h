// A font menu as a value: what an entry's options make of the fonts that are there. docs/font-menu.md tells what each
// option does. Nothing here keeps anything or throws but std::bad_alloc; any number of threads may call it.
#pragma once

#include "fontmenu/FaceOrder.h"
#include "fontmenu/MenuOptions.h"
#include "fontmenu/MenuWords.h"
#include "platform/Fonts.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace fontmenu {

inline constexpr FaceNumber kNoFace = ~FaceNumber{0};

enum class ItemKind : std::uint8_t { Face, Submenu, Title, Separator };
// How an item's title is drawn: in the menu's face, in the font's own, or in the menu's with a sample of the font
// beside it, because the font cannot write its name.
enum class Drawing : std::uint8_t { Plain, InFace, SampleBeside };

struct MenuItem {
    ItemKind kind = ItemKind::Separator;
    std::string title;   // UTF-8, as the font or set has it; empty for a separator alone
    std::string detail;  // what tells it from another of the same title; mostly empty
    // What choosing it chooses; of a family's submenu the face that its title is drawn in; else kNoFace.
    FaceNumber face = kNoFace;
    bool isMarked = false;                                  // it is the font in use, or leads to it
    platform::FontKind icon = platform::FontKind::Unknown;  // Unknown: no icon
    Drawing drawing = Drawing::Plain;
    int size = 0;              // points; 0: the menu's own
    std::uint32_t copies = 1;  // more than 1: it stands for so many, and is marked as such
    bool isActive = true;
    std::vector<MenuItem> children;  // never empty for a submenu
};

struct Menu {
    std::vector<MenuItem> items;
    bool isArranged = false;              // false: the application's own menu, with every face in one list
    bool arrangesFontPanel = false;       // the font panel shows the same
    std::size_t faces = 0, families = 0;  // that are active

    std::size_t lines() const;                      // at the top; separators do not count
    std::size_t ownLines() const { return faces; }  // of the application's own menu
};

// The first that has this PostScript name, else the first of this full name; nothing for an empty name.
std::optional<FaceNumber> faceNamed(std::string_view name, std::span<const platform::FontFace> faces);

// `current` is the place of the font in use. Every active face, or the one that stands for it, is somewhere in the
// menu; one that is not active is only in sets. The menu is the same whatever the order of `faces`.
Menu menuOf(std::span<const platform::FontFace> faces, std::span<const platform::FontSet> sets,
            const MenuOptions& options, std::optional<FaceNumber> current, const MenuWords& words);

}  // namespace fontmenu
