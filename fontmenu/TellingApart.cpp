#include "fontmenu/TellingApart.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <unordered_map>
#include <unordered_set>

using platform::FontFace;

namespace fontmenu {
namespace {

constexpr std::array<std::string_view, 5> kOwners{"Font Manager", "KDE", "FontAgent Pro", "Linotype FontExplorer X",
                                                  "Suitcase"};

std::string versionText(const FontFace& face) {
    char text[32];
    std::snprintf(text, sizeof text, "%u.%03u", face.version >> 16, (face.version & 0xFFFF) * 1000 / 0x10000);
    return face.version ? text : "";
}

using Property = std::string (*)(const FontFace&);

constexpr Property kProperties[] = {
    [](const FontFace& face) { return std::string(nameOf(face.kind)); },
    versionText,
    [](const FontFace& face) { return face.foundry; },
    [](const FontFace& face) { return face.file.substr(face.file.rfind('/') + 1); },
    [](const FontFace& face) { return face.file; },
};

// Without anything that distinguishes all of them.
std::string place(const FontFace& face) {
    return face.file.substr(face.file.rfind('/') + 1) + " " + std::to_string(face.index);
}

bool distinguishes(Property property, std::span<MenuItem* const> items, std::span<const FontFace> faces) {
    std::unordered_set<std::string> texts;
    return std::ranges::all_of(items, [&](const MenuItem* item) {
        std::string text = property(faces[item->face]);
        return !text.empty() && texts.insert(std::move(text)).second;
    });
}

// The items of each title that several have.
template <typename Action>
void forEachNamesakes(std::vector<MenuItem>& items, ItemKind kind, Action action) {
    std::unordered_map<std::string_view, std::vector<MenuItem*>> byTitle;
    std::unordered_map<std::string_view, MenuItem*> first;
    for (MenuItem& item : items) {
        if (item.kind != kind) continue;
        auto [found, isNew] = first.try_emplace(item.title, &item);
        if (isNew) continue;
        std::vector<MenuItem*>& namesakes = byTitle[item.title];
        if (namesakes.empty()) namesakes.push_back(found->second);
        namesakes.push_back(&item);
    }
    for (const auto& [title, namesakes] : byTitle) action(namesakes);
}

}  // namespace

void tellApart(std::vector<MenuItem>& items, std::span<const FontFace> faces) {
    forEachNamesakes(items, ItemKind::Face, [&](std::span<MenuItem* const> namesakes) {
        auto tells = [&](Property property) { return distinguishes(property, namesakes, faces); };
        auto property = std::ranges::find_if(kProperties, tells);
        for (MenuItem* item : namesakes)
            item->detail =
                property == std::end(kProperties) ? place(faces[item->face]) : (*property)(faces[item->face]);
    });
}

void tellSetsApart(std::vector<MenuItem>& items, std::span<const platform::FontSet* const> sets) {
    forEachNamesakes(items, ItemKind::Submenu, [&](std::span<MenuItem* const> namesakes) {
        for (MenuItem* item : namesakes)
            item->detail = nameOf(sets[static_cast<std::size_t>(item - items.data())]->owner);
    });
}

std::string_view nameOf(platform::SetOwner owner) { return kOwners[static_cast<std::size_t>(owner)]; }

}  // namespace fontmenu
