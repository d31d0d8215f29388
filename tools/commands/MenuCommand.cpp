#include "entrylist/EntryAddress.h"
#include "fontmenu/CatalogueNames.h"
#include "fontmenu/FontMenu.h"
#include "fontmenu/MenuText.h"
#include "linux/LinuxMachine.h"
#include "linux/texts/DisplayText.h"
#include "linux/texts/Locale.h"
#include "pane/fontcatalog/AdobeNames.h"
#include "settings/EntryList.h"
#include "tools/EntryListing.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/Refusal.h"
#include "tools/StoredDomain.h"
#include "tools/UsageTexts.h"
#include "tools/commands/Commands.h"
#include "tools/headless/FontsModule.h"

#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <future>

using namespace fontmenu;
using namespace platform;
using namespace settings;

namespace tools {
namespace {

struct Arguments {
    std::string entry = "0";
    EntryOfApplication entryOf = nullptr;
    std::optional<std::string> font;
    bool json = false, counts = false;
};

// "1,012", as the user writes numbers.
std::string grouped(std::size_t number) {
    locale_t locale = newlocale(LC_NUMERIC_MASK, "", nullptr);
    std::string separator = locale ? nl_langinfo_l(THOUSEP, locale) : "";
    if (locale) freelocale(locale);
    std::string text = std::to_string(number);
    for (std::ptrdiff_t at = std::ssize(text) - 3; at > 0; at -= 3)
        text.insert(static_cast<std::size_t>(at), separator);
    return text;
}

std::string language() {
    std::string_view locale = linux::localeOf("LC_MESSAGES");
    return std::string(locale.substr(0, locale.find_first_of("_.@")));
}

MenuOptions optionsOf(linux::DiskPreferences& preferences, const Arguments& arguments) {
    requireReadable(preferences, kSettingsDomain);
    PropertyList values = preferences.copyDomain(kSettingsDomain), entry;
    if (auto address = entrylist::entryAddress(arguments.entry)) {
        std::vector<PropertyList> entries = repairedList(values[kEntryListKey]);
        entry = entries[rowAt(*address, entries)];
    } else {
        entry = arguments.entryOf(arguments.entry);
    }
    MenuOptions options = menuOptions(entry[kSettingsKey]);
    options.isEnabled &= !coercedBoolean(values[kDisabledKey]);
    return options;
}

FaceNumber requireFace(const std::string& name, std::span<const FontFace> faces) {
    if (auto found = faceNamed(name, faces)) return *found;
    throw refused("there is no font \"%@\"", linux::displayText(name));
}

std::string countsText(const Menu& menu) {
    std::string faces = grouped(menu.faces), families = grouped(menu.families), own = grouped(menu.ownLines());
    if (!menu.isArranged)
        return localizedFormat("%@ faces, %@ families: the menu is left as it is, with %@ lines", faces, families, own);
    return localizedFormat("%@ faces, %@ families: %@ lines at the top instead of %@", faces, families,
                           grouped(menu.lines()), own);
}

void menu(const Arguments& arguments) {
    FontServices& fonts = requireFonts();
    auto listing = std::async(std::launch::async, [&fonts, spoken = language()] { return fonts.listFaces(spoken); });
    linux::LinuxStore store;
    store.preferences.setLongestWait(lockWait());
    MenuOptions options = optionsOf(store.preferences, arguments);
    PropertyList names = store.preferences.copyValue(fontcatalog::kAllNamesKey, fontcatalog::kCacheDomain);
    std::vector<FontSet> sets = fonts.listSets();
    std::vector<FontFace> faces = listing.get();
    takeCatalogueNames(faces, names);
    std::optional<FaceNumber> current;
    if (arguments.font) current = requireFace(*arguments.font, faces);
    Menu tree = menuOf(faces, sets, options, current, menuWords(localized));
    if (arguments.json) {
        MutableDictionary value(menuValue(tree, faces));
        if (arguments.counts) value.remove("menu");
        return printJson(std::move(value).freeze());
    }
    arguments.counts ? printLine(countsText(tree)) : print(menuText(tree, linux::displayText));
}

}  // namespace

void addMenuCommand(CLI::App& app, EntryOfApplication entryOf) {
    auto* command = app.add_subcommand("menu", localized("Show the font menu that an entry's options make"));
    auto arguments = std::make_shared<Arguments>();
    arguments->entryOf = entryOf;
    auto* entry = command->add_option(
        entryOf ? "ENTRY|APPLICATION" : "ENTRY", arguments->entry,
        entryOf ? localized("Row, as list numbers them (0 is the Global entry, and the default), or id:IDENTIFIER, "
                            "path:PATH or name:NAME; or a desktop file, .app folder or identifier of an application")
                : localized("Row, as list numbers them (0 is the Global entry, and the default), or id:IDENTIFIER, "
                            "path:PATH or name:NAME"));
    if (!entryOf) entry->check(entryName());
    command->add_option("--font", arguments->font, localized("The font in use, by its PostScript or full name"))
        ->type_name("NAME");
    command->add_flag("--json", arguments->json, localized("As JSON"));
    command->add_flag("--counts", arguments->counts, localized("How many faces, families and lines it has"));
    command->callback([arguments] { menu(*arguments); });
}

}  // namespace tools
