#include "fontmenu/CatalogueNames.h"

#include "propertylist/Unicode.h"

#include <string>
#include <string_view>

using platform::FontFace;
using platform::PropertyList;

namespace fontmenu {
namespace {

void replace(std::string& name, std::string_view known) {
    if (!known.empty()) name = known;
}

// What comes before the last words, or after the first ones; empty unless the text has both.
std::string_view before(std::string_view text, std::string_view lastWords) {
    bool fits = !lastWords.empty() && text.size() > lastWords.size() + 1 && text.ends_with(lastWords) &&
                text[text.size() - lastWords.size() - 1] == ' ';
    return fits ? text.substr(0, text.size() - lastWords.size() - 1) : std::string_view();
}
std::string_view after(std::string_view text, std::string_view firstWords) {
    bool fits = !firstWords.empty() && text.starts_with(firstWords) && text.substr(firstWords.size()).starts_with(' ');
    return fits ? text.substr(firstWords.size() + 1) : std::string_view();
}

void takeNames(FontFace& face, const PropertyList& record) {
    // A list's values have their blanks.
    auto value = [&](const char* key) { return propertylist::trimmed(record[key].stringValue()); };
    std::string_view name = value("FullName"), real = value("RealFullName"), style = value("StyleName");
    bool isListed = !real.empty();  // then "FullName" is the family; the name database has no families
    replace(face.family, isListed ? name : before(name, style));
    replace(face.style, style.empty() && isListed ? after(real, name) : style);
    replace(face.fullName, isListed ? real : name);
}

}  // namespace

void takeCatalogueNames(std::span<FontFace> faces, const PropertyList& allNames) {
    for (FontFace& face : faces)
        if (!face.postScriptName.empty())
            if (const PropertyList& record = allNames[face.postScriptName]) takeNames(face, record);
}

}  // namespace fontmenu
