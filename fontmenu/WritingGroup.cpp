#include "fontmenu/WritingGroup.h"

using platform::WritingSystem;

namespace fontmenu {
namespace {

std::size_t firstOf(const platform::WritingSystems& systems) {
    std::size_t system = 0;
    while (system < systems.size() && !systems[system]) ++system;
    return system;
}

}  // namespace

std::size_t writingGroup(const platform::FontFace& face) {
    auto covers = [&](WritingSystem system) { return face.writingSystems[static_cast<std::size_t>(system)]; };
    if (face.isSymbolic) return kSymbolGroup;
    platform::WritingSystems others = face.writingSystems;
    for (WritingSystem system : {WritingSystem::Latin, WritingSystem::Greek, WritingSystem::Cyrillic})
        others.reset(static_cast<std::size_t>(system));
    if (others.count() == 1) return firstOf(others);
    platform::WritingSystems rest = others;
    for (WritingSystem system : {WritingSystem::ChineseSimplified, WritingSystem::ChineseTraditional,
                                 WritingSystem::Japanese, WritingSystem::Korean})
        rest.reset(static_cast<std::size_t>(system));
    if (others.any() && rest.none()) return kEastAsianGroup;
    for (WritingSystem system : {WritingSystem::Latin, WritingSystem::Cyrillic, WritingSystem::Greek})
        if (covers(system)) return static_cast<std::size_t>(system);
    return others.any() ? firstOf(others) : kOtherGroup;
}

}  // namespace fontmenu
