// The options of an entry, as the font menu takes them. docs/font-menu.md tells what each does.
#pragma once

#include "platform/PlatformTypes.h"

#include <cstdint>

namespace fontmenu {

enum class Copies { Every, One, OneMarked };

struct MenuOptions {
    bool isEnabled = false;
    bool marksCurrent = false;
    bool drawsInFace = false;
    Copies copies = Copies::Every;
    bool hasSets = false;
    int size = 0;  // points, at most settings::kLargestFontSize; 0: the menu's own
    bool hasIcons = false;
    bool nestsFamilies = false;
    bool hasAllFonts = false;
    bool sortsByWritingSystem = false;
    bool hasFontAgentSets = true, hasFontExplorerSets = true, hasSuitcaseSets = true;
    bool drawsInactiveInFace = true;  // only where drawsInFace
    bool arrangesFontPanel = true;
};

// From an entry's "Settings", as docs/reading.md has it: what is missing is what the window shows for it, and numbers
// that no control can store count as some that one can.
MenuOptions menuOptions(const platform::PropertyList& settings);

}  // namespace fontmenu
