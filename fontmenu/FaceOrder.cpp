#include "fontmenu/FaceOrder.h"

#include "fontmenu/NameOrder.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

using platform::FontFace;

namespace fontmenu {
namespace {

constexpr std::uint32_t kFaceOfIndex = 0xFFFF;
constexpr int kNormalWidth = 100;

// From Unknown to Bitmap: the higher, the rather it stands for its copies.
constexpr std::array<int, platform::kFontKinds> kCapability{0, 4, 5, 3, 2, 1};

struct NamedFamily {
    std::string key;
    std::string_view name;
    std::vector<FaceNumber> faces;
    bool isActive = false;
};

std::vector<NamedFamily> familiesOf(std::span<const FontFace> faces) {
    std::vector<NamedFamily> families;
    std::unordered_map<std::string_view, std::size_t> byName;
    for (FaceNumber number = 0; number < faces.size(); ++number) {
        const FontFace& face = faces[number];
        auto [found, isNew] = byName.try_emplace(face.family, families.size());
        if (isNew) families.push_back({orderKey(face.family), face.family, {}});
        NamedFamily& family = families[found->second];
        family.faces.push_back(number);
        family.isActive |= face.isActive;
    }
    std::ranges::sort(families, [](const NamedFamily& a, const NamedFamily& b) {
        return std::tie(a.key, a.name) < std::tie(b.key, b.name);
    });
    return families;
}

bool standsBefore(const FontFace& a, const FontFace& b) {
    auto place = [](const FontFace& face) {
        return std::tuple(face.width != kNormalWidth, face.width, face.weight, face.slant);
    };
    if (place(a) != place(b)) return place(a) < place(b);
    return std::tie(a.style, a.fullName, a.postScriptName, a.file, a.index) <
           std::tie(b.style, b.fullName, b.postScriptName, b.file, b.index);
}

std::string identity(const FontFace& face) {
    bool isNamed = !face.postScriptName.empty();
    std::string text = face.file;
    text.append(1, '\0').append(std::to_string(isNamed ? face.index & kFaceOfIndex : face.index));
    return text.append(1, '\0').append(face.postScriptName);
}

// What copies have in common.
std::string fontOf(const FontFace& face) {
    if (!face.postScriptName.empty()) return face.postScriptName;
    return std::string(1, '\0').append(face.family).append(1, '\0').append(face.style);
}

}  // namespace

FaceOrder faceOrder(std::span<const FontFace> faces) {
    FaceOrder order{{}, std::vector(faces.size(), kNotListed), std::vector<std::uint32_t>(faces.size()), 0};
    order.faces.reserve(faces.size());
    std::unordered_set<std::string> known;
    known.reserve(faces.size());
    std::uint32_t number = 0;
    for (NamedFamily& family : familiesOf(faces)) {
        std::ranges::sort(family.faces, [&](FaceNumber a, FaceNumber b) { return standsBefore(faces[a], faces[b]); });
        for (FaceNumber face : family.faces) {
            order.familyOf[face] = number;
            if (!known.insert(identity(faces[face])).second) continue;
            order.rank[face] = static_cast<std::uint32_t>(order.faces.size());
            order.faces.push_back(face);
        }
        ++number;
        order.families += family.isActive;
    }
    return order;
}

FaceCopies faceCopies(std::span<const FontFace> faces, const FaceOrder& order, Copies handling) {
    FaceCopies copies{std::vector<FaceNumber>(faces.size()), std::vector<std::uint32_t>(faces.size(), 1)};
    std::iota(copies.shownFor.begin(), copies.shownFor.end(), FaceNumber{0});
    if (handling == Copies::Every) return copies;
    auto worth = [&](FaceNumber number) {
        const FontFace& face = faces[number];
        return std::tuple(face.isActive, face.version, kCapability[static_cast<std::size_t>(face.kind)]);
    };
    std::unordered_map<std::string, std::vector<FaceNumber>> fonts;
    fonts.reserve(order.faces.size());
    for (FaceNumber face : order.faces) fonts[fontOf(faces[face])].push_back(face);
    for (const auto& [name, same] : fonts) {
        FaceNumber shown = *std::ranges::max_element(same, {}, worth);
        for (FaceNumber face : same) copies.shownFor[face] = shown;
        copies.count[shown] = static_cast<std::uint32_t>(same.size());
    }
    return copies;
}

}  // namespace fontmenu
