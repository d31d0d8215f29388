// The preview beside the options: the font menu that they make of the fonts of this computer, for the entry that the
// editor shows. It is in a drawer that is closed at first, and opens as it was left. Nothing is listed or built while
// it is closed.
#pragma once

#include "entrylist/ListOwner.h"
#include "fontmenu/FontMenu.h"
#include "pane/MenuDrawer.h"
#include "platform/Outlet.h"
#include "platform/Platform.h"

#include <memory>
#include <optional>
#include <string_view>

class MenuPreview {
public:
    // Both outlive it.
    MenuPreview(const platform::Platform& platform, entrylist::ListOwner& owner) : platform_(platform), owner_(owner) {}

    // False for names that are not its own.
    bool setOutlet(std::string_view name, platform::View& object);
    bool performAction(std::string_view selector);

    // Opens the drawer if it was open last time.
    void start();
    // For the entry that is shown, as it is stored now.
    void show();
    // Fonts may have come or gone.
    void lookAgain();

private:
    void toggle();
    void setOpen(bool isOpen);
    void list();
    void take(platform::ListedFonts fonts);
    fontmenu::MenuOptions options();
    void showCounts(const fontmenu::Menu& menu);
    std::string localized(std::string_view english) const { return platform_.paneBundle.localizedString(english); }

    const platform::Platform& platform_;
    entrylist::ListOwner& owner_;
    bool isOpen_ = false;
    std::shared_ptr<const platform::ListedFonts> fonts_;  // null: not listed yet
    std::optional<fontmenu::FaceNumber> current_;         // the font in use: the one of the window's texts
    std::shared_ptr<MenuPreview*> listing_;               // that is under way; null: none
    Outlet<platform::Button> button_;
    Outlet<platform::View> list_;
    std::unique_ptr<MenuDrawer> drawer_;  // null until it is opened first
};
