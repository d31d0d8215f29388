// What making a font menu takes, for as many faces as the largest machines have and more, and listing this machine's.
#include "fontmenu/FontMenu.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#ifdef TYPESLATE_HAVE_FONTS
#include "linux/fonts/LinuxFonts.h"
#endif

using namespace fontmenu;
using namespace platform;

namespace {

template <typename Action>
double bestMilliseconds(int rounds, Action action) {
    double best = 1e9;
    for (int round = 0; round < rounds; ++round) {
        auto start = std::chrono::steady_clock::now();
        action();
        best =
            std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

// Families of six, every fifth face twice, in no order.
std::vector<FontFace> facesFor(std::size_t count) {
    std::mt19937 random(1);
    std::vector<FontFace> faces(count);
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t font = i % 5 ? i : i / 2;
        FontFace& face = faces[i];
        face.family = face.listedFamily = "Some Family " + std::to_string(font / 6 * 7919 % 100'003);
        face.style = "Style " + std::to_string(font % 6);
        face.fullName = face.family + " " + face.style;
        face.postScriptName = "SomeFamily" + std::to_string(font);
        face.file = "/usr/share/fonts/truetype/some/" + std::to_string(i) + ".ttf";
        face.weight = 100 + static_cast<int>(font % 6) * 100;
        face.kind = FontKind::TrueType;
        face.writingSystems = WritingSystems(1) << (font / 6 % kWritingSystems);
    }
    std::ranges::shuffle(faces, random);
    return faces;
}

}  // namespace

// With a number: makes that menu once, for who counts instructions.
int main(int argc, char** argv) {
    MenuWords words = menuWords([](std::string_view text) { return std::string(text); });
    MenuOptions options;
    options.isEnabled = options.drawsInFace = options.hasSets = options.hasIcons = options.nestsFamilies = true;
    options.hasAllFonts = options.sortsByWritingSystem = true;
    options.copies = Copies::OneMarked;
    std::vector<std::size_t> counts{3'000, 10'000, 100'000};
    if (argc > 1) counts = {std::strtoul(argv[1], nullptr, 10)};
    double first = 0;
    for (std::size_t count : counts) {
        std::vector<FontFace> faces = facesFor(count);
        std::vector<FontSet> sets(20, {"A set", SetOwner::KDE, {}, {}});
        for (std::size_t i = 0; i < count; i += 10) sets[i / 10 % sets.size()].families.push_back(faces[i].family);
        double best = bestMilliseconds(argc > 1 ? 1 : 9, [&] { menuOf(faces, sets, options, 0, words); });
        if (first == 0) first = best / static_cast<double>(count);
        std::printf("a menu of %zu faces: %.2f ms, a face %.2f times that of the fewest\n", count, best,
                    best / static_cast<double>(count) / first);
    }
#ifdef TYPESLATE_HAVE_FONTS
    if (argc > 1) return 0;
    std::size_t listed = 0;
    double listing = bestMilliseconds(5, [&] { listed = linux::LinuxFonts().listFaces("en").size(); });
    std::printf("listing this machine's %zu faces: %.1f ms\n", listed, listing);
#endif
    return 0;
}
