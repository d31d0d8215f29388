// The font menu behind the C interface. The fonts are listed by a module, so that who reads settings only loads nothing
// for it.
#include "fontmenu/CatalogueNames.h"
#include "fontmenu/FontMenu.h"
#include "linux/files/Paths.h"
#include "reader/FontsModule.h"
#include "reader/Objects.h"
#include "settings/EntryList.h"

#include <dlfcn.h>

#include <deque>

using namespace fontmenu;
using namespace reader;
using namespace platform;

namespace {

// In "typeslate" beside this library.
FontServices* fontServices() {
    Dl_info place{};
    if (!dladdr(reinterpret_cast<const void*>(&typeslate_menu_new), &place) || !place.dli_fname) return nullptr;
    std::string path = std::string(linux::folderOf(place.dli_fname)) + "/typeslate/" + kFontsModule;
    void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    auto factory = module ? reinterpret_cast<FontsFactory>(dlsym(module, kFontsFactoryName)) : nullptr;
    return factory ? factory() : nullptr;
}

// The menu as C sees it, and what that points to.
struct MenuAndItems : typeslate_menu {
    std::vector<FontFace> faceList;
    Menu tree;
    std::deque<typeslate_item> all;
    std::deque<std::vector<const typeslate_item*>> lists;
};

const typeslate_item* itemOf(const MenuItem& item, MenuAndItems& menu);

void addItems(const std::vector<MenuItem>& items, MenuAndItems& menu, const typeslate_item* const*& first,
              std::size_t& count) {
    std::vector<const typeslate_item*>& list = menu.lists.emplace_back();
    for (const MenuItem& item : items) list.push_back(itemOf(item, menu));
    first = list.data();
    count = list.size();
}

const typeslate_item* itemOf(const MenuItem& item, MenuAndItems& menu) {
    static const FontFace sNone;
    const FontFace& face = item.face == kNoFace ? sNone : menu.faceList[item.face];
    const bool isNone = &face == &sNone;
    typeslate_item& made = menu.all.emplace_back(typeslate_item{
        .kind = static_cast<int>(item.kind),
        .title = item.title.c_str(),
        .detail = item.detail.c_str(),
        .is_marked = item.isMarked,
        .is_active = item.isActive,
        .drawing = static_cast<int>(item.drawing),
        .size = item.size,
        .icon = static_cast<int>(item.icon),
        .copies = item.copies,
        .family = face.family.c_str(),
        .style = face.style.c_str(),
        .full_name = face.fullName.c_str(),
        .postscript_name = face.postScriptName.c_str(),
        .file = face.file.c_str(),
        .index = face.index,
        .weight = isNone ? 0 : face.weight,
        .width = isNone ? 0 : face.width,
        .slant = face.slant,
        .items = nullptr,
        .item_count = 0,
    });
    if (!item.children.empty()) addItems(item.children, menu, made.items, made.item_count);
    return &made;
}

}  // namespace

typeslate_menu* typeslate_menu_new(typeslate_settings* settings, const typeslate_entry* entry, const char* current_font,
                                   const char* language, int* status) {
    report(status, TYPESLATE_BAD_ARGUMENT);
    if (!settings || !entry) return nullptr;
    report(status, TYPESLATE_NO_MEMORY);
    return guarded<typeslate_menu*>(nullptr, [&]() -> typeslate_menu* {
        FontServices* fonts = fontServices();
        report(status, fonts ? TYPESLATE_OK : TYPESLATE_ABSENT);
        if (!fonts) return nullptr;
        auto menu = std::make_unique<MenuAndItems>();
        menu->faceList = fonts->listFaces(language ? language : "en");
        settings->readCatalogue();
        takeCatalogueNames(menu->faceList, settings->currentNames());
        MenuOptions options = menuOptions(entry->resolution.entry[settings::kSettingsKey]);
        options.isEnabled &= entry->isOn;
        menu->tree = menuOf(menu->faceList, fonts->listSets(), options, faceNamed(textOf(current_font), menu->faceList),
                            menuWords([](std::string_view english) { return std::string(english); }));
        static_cast<typeslate_menu&>(*menu) = {.is_arranged = menu->tree.isArranged,
                                               .arranges_font_panel = menu->tree.arrangesFontPanel,
                                               .faces = menu->tree.faces,
                                               .families = menu->tree.families,
                                               .lines = menu->tree.lines(),
                                               .items = nullptr,
                                               .item_count = 0};
        addItems(menu->tree.items, *menu, menu->items, menu->item_count);
        return menu.release();
    });
}

// Numbers of the C interface.
static_assert(static_cast<int>(fontmenu::ItemKind::Separator) == TYPESLATE_ITEM_SEPARATOR);
static_assert(static_cast<int>(Drawing::SampleBeside) == TYPESLATE_DRAWN_WITH_SAMPLE);
static_assert(static_cast<int>(FontKind::Bitmap) == TYPESLATE_BITMAP && kFontKinds == TYPESLATE_BITMAP + 1);

void typeslate_menu_free(typeslate_menu* menu) { delete static_cast<MenuAndItems*>(menu); }
