#include "pane/MenuDrawer.h"

#include "entrylist/Outlets.h"

using namespace platform;

std::unique_ptr<MenuDrawer> MenuDrawer::make(const Platform& platform, View& list) {
    std::unique_ptr<MenuDrawer> drawer(new MenuDrawer(list));
    drawer->interface_ = platform.toolkit.loadInterface(platform.paneBundle, "MenuPreview", *drawer);
    if (!drawer->interface_) return nullptr;
    list.replaceInSuperview(*drawer->splitter_);
    drawer->listPlace_->replaceInSuperview(list);
    return drawer;
}

MenuDrawer::~MenuDrawer() {
    if (interface_) splitter_->replaceInSuperview(list_);
}

void MenuDrawer::setOutlet(std::string_view name, View& object) {
    static constexpr entrylist::NamedOutlet<MenuDrawer> kOutlets[] = {
        {"previewSplitter", [](MenuDrawer& d, View& o) { d.splitter_.connect(o); }},
        {"previewList", [](MenuDrawer& d, View& o) { d.listPlace_.connect(o); }},
        {"previewDrawer", [](MenuDrawer& d, View& o) { d.drawer_.connect(o); }},
        {"previewMenu", [](MenuDrawer& d, View& o) { d.menu_.connect(o); }},
        {"previewCounts", [](MenuDrawer& d, View& o) { d.counts_.connect(o); }},
    };
    entrylist::connectNamed(*this, kOutlets, name, object);
}
