#include "host/FontLister.h"

#ifdef TYPESLATE_HAVE_FONTS

#include "linux/fonts/LinuxFonts.h"
#include "linux/texts/Locale.h"

#include <sys/stat.h>

#include <string>
#include <unordered_map>

namespace host {

using namespace platform;

namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;

std::int64_t lastChange(const std::string& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) return 0;
    return status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec;
}

ListedFonts listedFonts(const std::string& language) {
    linux::LinuxFonts services;
    ListedFonts fonts;
    fonts.faces = services.listFaces(language);
    fonts.sets = services.listSets();
    std::unordered_map<std::string_view, std::int64_t> known;
    fonts.modified.reserve(fonts.faces.size());
    for (const FontFace& face : fonts.faces) {
        const auto [place, isNew] = known.try_emplace(face.file, 0);
        if (isNew) place->second = lastChange(face.file);
        fonts.modified.push_back(place->second);
    }
    return fonts;
}

}  // namespace

std::function<ListedFonts()> fontLister() {
    const std::string_view locale = linux::localeOf("LC_MESSAGES");
    return [language = std::string(locale.substr(0, locale.find_first_of("_.@")))] { return listedFonts(language); };
}

}  // namespace host

#else

namespace host {

std::function<platform::ListedFonts()> fontLister() { return nullptr; }

}  // namespace host

#endif
