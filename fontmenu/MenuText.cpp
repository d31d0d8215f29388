#include "fontmenu/MenuText.h"

#include <array>
#include <utility>

using platform::FontFace;
using platform::MutableDictionary;
using platform::PropertyList;

namespace fontmenu {
namespace {

constexpr std::array<const char*, 4> kKinds{"face", "submenu", "title", "separator"};
constexpr std::array<const char*, 3> kDrawings{"plain", "inFace", "sampleBeside"};
constexpr std::array<const char*, 3> kDrawingMarks{"", " Aa", " +Aa"};

using Shown = std::function<std::string(std::string_view)>;

std::string marksOf(const MenuItem& item) {
    std::string text = item.kind == ItemKind::Submenu ? " ▸" : "";
    text += kDrawingMarks[static_cast<std::size_t>(item.drawing)];
    if (item.size) text.append(" ").append(std::to_string(item.size)).append(" pt");
    if (item.icon != platform::FontKind::Unknown) text.append(" [").append(nameOf(item.icon)).append("]");
    if (item.copies > 1) text.append(" ×").append(std::to_string(item.copies));
    return item.isActive ? text : text + " ○";
}

void addLines(std::string& text, const std::vector<MenuItem>& items, std::size_t indent, const Shown& shown) {
    for (const MenuItem& item : items) {
        text.append(indent, ' ');
        if (item.kind == ItemKind::Separator) {
            text += "────\n";
            continue;
        }
        bool isTitle = item.kind == ItemKind::Title;
        text.append(item.isMarked ? "✓ " : isTitle ? "— " : "").append(shown(item.title));
        if (!item.detail.empty()) text.append(" (").append(shown(item.detail)).append(")");
        text.append(isTitle ? " —" : marksOf(item)).append("\n");
        addLines(text, item.children, indent + 2, shown);
    }
}

PropertyList faceValue(const FontFace& face) {
    PropertyList path = face.file;
    return PropertyList::dictionary({{"family", face.family},
                                     {"style", face.style},
                                     {"postScriptName", face.postScriptName},
                                     {"file", path ? path : PropertyList::data(face.file)},
                                     {"index", face.index}});
}

PropertyList itemValues(const std::vector<MenuItem>& items, std::span<const FontFace> faces) {
    std::vector<PropertyList> values;
    for (const MenuItem& item : items) {
        MutableDictionary value;
        value.set("kind", kKinds[static_cast<std::size_t>(item.kind)]);
        if (item.kind != ItemKind::Separator) value.set("title", item.title);
        if (item.kind == ItemKind::Face || item.kind == ItemKind::Submenu) {
            value.set("detail", item.detail);
            value.set("marked", item.isMarked);
            value.set("icon", nameOf(item.icon));
            value.set("drawing", kDrawings[static_cast<std::size_t>(item.drawing)]);
            value.set("size", item.size);
            value.set("copies", item.copies);
            value.set("active", item.isActive);
        }
        if (item.face != kNoFace) value.set("face", faceValue(faces[item.face]));
        if (!item.children.empty()) value.set("children", itemValues(item.children, faces));
        values.push_back(std::move(value).freeze());
    }
    return PropertyList::array(std::move(values));
}

}  // namespace

std::string menuText(const Menu& menu, const Shown& shown) {
    std::string text;
    addLines(text, menu.items, 0, shown);
    return text;
}

PropertyList menuValue(const Menu& menu, std::span<const FontFace> faces) {
    return PropertyList::dictionary({{"arranged", menu.isArranged},
                                     {"fontPanel", menu.arrangesFontPanel},
                                     {"faces", menu.faces},
                                     {"families", menu.families},
                                     {"lines", menu.lines()},
                                     {"ownLines", menu.ownLines()},
                                     {"menu", itemValues(menu.items, faces)}});
}

}  // namespace fontmenu
