#include "pane/MenuPreview.h"

#include "entrylist/Outlets.h"
#include "fontmenu/CatalogueNames.h"
#include "pane/fontcatalog/AdobeNames.h"
#include "propertylist/Format.h"
#include "settings/EntryList.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <utility>

using namespace fontmenu;
using namespace platform;
using namespace settings;

namespace {

// What the window itself remembers, in a domain of its own.
constexpr std::string_view kWindowDomain = "com.tarnwick.typeslate.Settings";
constexpr std::string_view kIsOpenKey = "Show Preview";  // boolean

std::vector<FontMenuItem> shownItems(std::vector<MenuItem> items) {
    std::vector<FontMenuItem> shown;
    shown.reserve(items.size());
    for (MenuItem& item : items) {
        FontMenuItem& line = shown.emplace_back();
        line.kind = static_cast<FontMenuItem::Kind>(item.kind);
        line.title = std::move(item.title);
        line.detail = std::move(item.detail);
        if (item.face != kNoFace) line.face = item.face;
        line.isMarked = item.isMarked;
        line.icon = item.icon;
        line.drawing = static_cast<FontMenuItem::Drawing>(item.drawing);
        line.size = item.size;
        line.copies = item.copies;
        line.isActive = item.isActive;
        line.children = shownItems(std::move(item.children));
    }
    return shown;
}

// The plainest face of a family.
std::optional<FaceNumber> faceOf(const std::string& family, const std::vector<FontFace>& faces) {
    std::optional<FaceNumber> found;
    const auto plainness = [&](FaceNumber number) {
        const FontFace& face = faces[number];
        return std::tuple(!face.isActive, face.slant != 0, std::abs(face.width - 100), std::abs(face.weight - 400));
    };
    for (FaceNumber number = 0; number < faces.size(); ++number)
        if (faces[number].listedFamily == family && (!found || plainness(number) < plainness(*found))) found = number;
    return found;
}

}  // namespace

bool MenuPreview::setOutlet(std::string_view name, View& object) {
    static constexpr entrylist::NamedOutlet<MenuPreview> kOutlets[] = {
        {"previewButton", [](MenuPreview& p, View& o) { p.button_.connect(o); }},
        {"entriesColumn", [](MenuPreview& p, View& o) { p.list_.connect(o); }},
    };
    return entrylist::connectNamed(*this, kOutlets, name, object);
}

bool MenuPreview::performAction(std::string_view selector) {
    static constexpr entrylist::NamedAction<MenuPreview> kActions[] = {{"togglePreview:", &MenuPreview::toggle}};
    return entrylist::performNamed(*this, kActions, selector);
}

void MenuPreview::start() { setOpen(platform_.preferences.getBooleanValue(kIsOpenKey, kWindowDomain)); }

void MenuPreview::toggle() {
    setOpen(!isOpen_);
    platform_.preferences.setValue(kIsOpenKey, isOpen_, kWindowDomain);
    platform_.preferences.synchronize(kWindowDomain);
}

void MenuPreview::setOpen(bool isOpen) {
    if (isOpen && !drawer_) drawer_ = MenuDrawer::make(platform_, *list_);
    isOpen_ = isOpen && drawer_;
    if (drawer_) drawer_->setOpen(isOpen_);
    button_->setTitle(isOpen_ ? localized("Hide Preview") : localized("Show Preview"));
    if (!isOpen_) return;
    show();
    list();
}

void MenuPreview::lookAgain() {
    if (isOpen_) list();
}

void MenuPreview::list() {
    if (listing_) return;
    if (!fonts_) drawer_->menu().setPlaceholder(localized("Listing the fonts…"));
    listing_ = std::make_shared<MenuPreview*>(this);
    platform_.toolkit.listFonts([listing = std::weak_ptr(listing_)](ListedFonts fonts) {
        if (const auto preview = listing.lock()) (*preview)->take(std::move(fonts));
    });
}

void MenuPreview::take(ListedFonts fonts) {
    listing_.reset();
    takeCatalogueNames(fonts.faces,
                       platform_.preferences.copyValue(fontcatalog::kAllNamesKey, fontcatalog::kCacheDomain));
    current_ = faceOf(fonts.interfaceFamily, fonts.faces);
    if (fonts.faces.empty()) drawer_->menu().setPlaceholder(localized("No fonts found"));
    fonts_ = std::make_shared<const ListedFonts>(std::move(fonts));
    show();
}

MenuOptions MenuPreview::options() {
    const PropertyList entries = owner_.entries();
    const auto row = owner_.shown().find(entries.elements());
    MenuOptions options = menuOptions(row ? entries[*row][kSettingsKey] : PropertyList());
    options.isEnabled &= !platform_.preferences.getBooleanValue(kDisabledKey, kSettingsDomain);
    return options;
}

void MenuPreview::show() {
    if (!isOpen_ || !fonts_) return;
    const MenuWords words = menuWords([this](std::string_view english) { return localized(english); });
    Menu menu = menuOf(fonts_->faces, fonts_->sets, options(), current_, words);
    showCounts(menu);
    drawer_->menu().setMenu(fonts_, shownItems(std::move(menu.items)));
}

void MenuPreview::showCounts(const Menu& menu) {
    const auto number = [this](std::size_t count) { return platform_.toolkit.numberText(count); };
    const std::string faces = number(menu.faces), families = number(menu.families), own = number(menu.ownLines());
    std::string text;
    if (menu.isArranged)
        text = formatted(localized("%@ faces, %@ families: %@ lines at the top instead of %@"),
                         {faces, families, number(menu.lines()), own});
    else
        text = formatted(localized("%@ faces, %@ families: the menu is left as it is, with %@ lines"),
                         {faces, families, own});
    if (menu.arrangesFontPanel) text += "\n" + localized("The font panel shows the same.");
    drawer_->counts().setStringValue(text);
}
