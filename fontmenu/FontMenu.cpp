#include "fontmenu/FontMenu.h"

#include "fontmenu/NameOrder.h"
#include "fontmenu/TellingApart.h"
#include "fontmenu/WritingGroup.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <tuple>
#include <unordered_map>
#include <utility>

using platform::FontFace;
using platform::FontSet;
using platform::SetOwner;

namespace fontmenu {
namespace {

using Faces = std::vector<FaceNumber>;  // in the menu's order

class Builder {
public:
    Builder(std::span<const FontFace> faces, const MenuOptions& options, std::optional<FaceNumber> current,
            const MenuWords& words)
        : faces_(faces),
          options_(options),
          words_(words),
          order_(faceOrder(faces)),
          copies_(faceCopies(faces, order_, options.isEnabled ? options.copies : Copies::Every)) {
        for (FaceNumber face : order_.faces) {
            if (!faces[face].isActive) continue;
            ++active_;
            if (copies_.shownFor[face] == face) shown_.push_back(face);
        }
        if (current && *current < faces.size() && options.marksCurrent) current_ = copies_.shownFor[*current];
    }

    Menu menu(std::span<const FontSet> sets) {
        Menu menu{{}, options_.isEnabled, options_.isEnabled && options_.arrangesFontPanel, active_, order_.families};
        if (!options_.isEnabled) {
            for (FaceNumber face : shown_) menu.items.push_back(ownItem(face));
            return menu;
        }
        if (options_.hasSets) menu.items = setItems(sets);
        if (options_.hasAllFonts) addSubmenu(menu.items, words_.allFonts, flatItems(shown_));
        std::vector<MenuItem> rest = options_.sortsByWritingSystem ? groupItems() : items(shown_);
        if (!menu.items.empty() && !rest.empty()) menu.items.emplace_back();
        std::ranges::move(rest, std::back_inserter(menu.items));
        return menu;
    }

private:
    std::string fullName(const FontFace& face) const {
        if (!face.fullName.empty()) return face.fullName;
        return face.style.empty() ? face.family : face.family + " " + face.style;
    }

    MenuItem ownItem(FaceNumber number) const {
        MenuItem item;
        item.kind = ItemKind::Face;
        item.title = fullName(faces_[number]);
        item.face = number;
        return item;
    }

    Drawing drawing(const FontFace& face) const {
        if (!options_.drawsInFace || (!face.isActive && !options_.drawsInactiveInFace)) return Drawing::Plain;
        return face.canWriteItsName && !face.isSymbolic ? Drawing::InFace : Drawing::SampleBeside;
    }

    MenuItem faceItem(FaceNumber number) const {
        const FontFace& face = faces_[number];
        MenuItem item = ownItem(number);
        item.isMarked = number == current_;
        if (options_.hasIcons) item.icon = face.kind;
        item.drawing = drawing(face);
        item.size = options_.size;
        if (options_.copies == Copies::OneMarked) item.copies = copies_.count[number];
        item.isActive = face.isActive;
        return item;
    }

    // Of faces of one family the one that is nearest to what the family is when nothing is said of its style.
    FaceNumber plainest(std::span<const FaceNumber> family) const {
        return *std::ranges::min_element(family, {}, [&](FaceNumber number) {
            const FontFace& face = faces_[number];
            return std::tuple(!face.isActive, face.slant != 0, std::abs(face.width - 100), std::abs(face.weight - 400));
        });
    }

    std::vector<MenuItem> itemsOf(std::span<const FaceNumber> faces, bool isInFamily) const {
        std::vector<MenuItem> items;
        items.reserve(faces.size());
        for (FaceNumber face : faces) {
            MenuItem& item = items.emplace_back(faceItem(face));
            if (isInFamily && !faces_[face].style.empty()) item.title = faces_[face].style;
        }
        tellApart(items, faces_);
        return items;
    }
    std::vector<MenuItem> flatItems(std::span<const FaceNumber> faces) const { return itemsOf(faces, false); }

    MenuItem familyItem(std::span<const FaceNumber> family) const {
        MenuItem item = faceItem(plainest(family));
        item.title = faces_[item.face].family;
        if (family.size() == 1) return item;
        item.kind = ItemKind::Submenu;
        item.copies = 1;
        item.children = itemsOf(family, true);
        item.isMarked = std::ranges::any_of(item.children, &MenuItem::isMarked);
        item.isActive = std::ranges::any_of(item.children, &MenuItem::isActive);
        auto isOther = [&](const MenuItem& child) { return child.icon != item.icon; };
        if (std::ranges::any_of(item.children, isOther)) item.icon = platform::FontKind::Unknown;
        return item;
    }

    // Each family is what lies between two positions.
    template <typename Action>
    void forEachFamily(std::span<const FaceNumber> faces, Action action) const {
        while (!faces.empty()) {
            std::uint32_t family = order_.familyOf[faces.front()];
            auto isOther = [&](FaceNumber face) { return order_.familyOf[face] != family; };
            auto size = static_cast<std::size_t>(std::ranges::find_if(faces, isOther) - faces.begin());
            action(faces.first(size));
            faces = faces.subspan(size);
        }
    }

    std::vector<MenuItem> items(std::span<const FaceNumber> faces) const {
        if (!options_.nestsFamilies) return flatItems(faces);
        std::vector<MenuItem> items;
        forEachFamily(faces, [&](std::span<const FaceNumber> family) { items.push_back(familyItem(family)); });
        return items;
    }

    static void addSubmenu(std::vector<MenuItem>& items, const std::string& title, std::vector<MenuItem> children) {
        if (children.empty()) return;
        MenuItem& item = items.emplace_back();
        item.kind = ItemKind::Submenu;
        item.title = title;
        item.isMarked = std::ranges::any_of(children, &MenuItem::isMarked);
        item.children = std::move(children);
    }

    // The groups that have fonts, in the order of their names; those that are no writing system come last.
    std::vector<std::pair<const std::string*, Faces>> groups() const {
        std::array<Faces, kGroups> faces;
        forEachFamily(shown_, [&](std::span<const FaceNumber> family) {
            Faces& group = faces[writingGroup(faces_[plainest(family)])];
            group.insert(group.end(), family.begin(), family.end());
        });
        std::vector<std::tuple<bool, std::string, std::size_t>> order;
        for (std::size_t i = 0; i < kGroups; ++i)
            if (!faces[i].empty())
                order.emplace_back(i >= kOtherGroup, i >= kOtherGroup ? "" : orderKey(words_.groups[i]), i);
        std::ranges::sort(order);
        std::vector<std::pair<const std::string*, Faces>> groups;
        groups.reserve(order.size());
        for (const auto& [isLast, key, i] : order) groups.emplace_back(&words_.groups[i], std::move(faces[i]));
        return groups;
    }
    std::vector<MenuItem> groupItems() const {
        auto all = groups();
        if (all.size() < 2) return items(shown_);
        std::vector<MenuItem> result;
        for (const auto& [title, faces] : all) {
            if (options_.nestsFamilies) {
                addSubmenu(result, *title, items(faces));
                continue;
            }
            MenuItem& heading = result.emplace_back();
            heading.kind = ItemKind::Title;
            heading.title = *title;
            std::ranges::move(items(faces), std::back_inserter(result));
        }
        return result;
    }

    bool isIncluded(SetOwner owner) const {
        switch (owner) {
            case SetOwner::FontAgentPro:
                return options_.hasFontAgentSets;
            case SetOwner::FontExplorerX:
                return options_.hasFontExplorerSets;
            case SetOwner::Suitcase:
                return options_.hasSuitcaseSets;
            case SetOwner::FontManager:
            case SetOwner::KDE:
                break;
        }
        return true;
    }

    // What the set names, as it is shown.
    Faces membersOf(const FontSet& set) {
        if (listedFamilies_.empty())
            for (FaceNumber face : order_.faces) listedFamilies_[faces_[face].listedFamily].push_back(face);
        std::vector<std::uint32_t> ranks;
        for (const std::string& family : set.families)
            if (auto found = listedFamilies_.find(family); found != listedFamilies_.end())
                for (FaceNumber face : found->second) ranks.push_back(order_.rank[copies_.shownFor[face]]);
        std::ranges::sort(ranks);
        ranks.erase(std::unique(ranks.begin(), ranks.end()), ranks.end());
        Faces members;
        for (std::uint32_t rank : ranks) members.push_back(order_.faces[rank]);
        return members;
    }

    std::vector<MenuItem> setItems(std::span<const FontSet> sets) {
        std::vector<MenuItem> result;
        std::vector<const FontSet*> shownSets;
        for (const FontSet& set : sets) {
            if (!isIncluded(set.owner)) continue;
            std::vector<MenuItem> children = setItems(set.children);
            std::ranges::move(items(membersOf(set)), std::back_inserter(children));
            addSubmenu(result, set.name, std::move(children));
            if (result.size() > shownSets.size()) shownSets.push_back(&set);
        }
        tellSetsApart(result, shownSets);
        return result;
    }

    std::span<const FontFace> faces_;
    const MenuOptions& options_;
    const MenuWords& words_;
    FaceOrder order_;
    FaceCopies copies_;
    std::size_t active_ = 0;
    Faces shown_;  // of the active ones, those that stand for others or themselves
    FaceNumber current_ = kNoFace;
    std::unordered_map<std::string_view, Faces> listedFamilies_;
};

}  // namespace

std::size_t Menu::lines() const {
    return items.size() - static_cast<std::size_t>(std::ranges::count(items, ItemKind::Separator, &MenuItem::kind));
}

Menu menuOf(std::span<const FontFace> faces, std::span<const FontSet> sets, const MenuOptions& options,
            std::optional<FaceNumber> current, const MenuWords& words) {
    return Builder(faces, options, current, words).menu(sets);
}

std::optional<FaceNumber> faceNamed(std::string_view name, std::span<const FontFace> faces) {
    if (name.empty()) return std::nullopt;
    for (auto member : {&FontFace::postScriptName, &FontFace::fullName})
        if (auto found = std::ranges::find(faces, name, member); found != faces.end())
            return static_cast<FaceNumber>(found - faces.begin());
    return std::nullopt;
}

}  // namespace fontmenu
