// The drawer that the preview is in. What it consists of is in an interface file of its own, which is loaded when it is
// opened first: a window pays nothing for a drawer that stays closed.
#pragma once

#include "platform/Outlet.h"
#include "platform/Platform.h"

#include <memory>
#include <string_view>

class MenuDrawer final : platform::InterfaceOwner {
public:
    // It comes beside the list, which outlives it and is back in its place afterwards. Null when the interface file
    // cannot be loaded.
    static std::unique_ptr<MenuDrawer> make(const platform::Platform& platform, platform::View& list);
    ~MenuDrawer() override;

    void setOpen(bool isOpen) { drawer_->setHidden(!isOpen); }
    platform::FontMenuView& menu() { return *menu_; }
    platform::TextField& counts() { return *counts_; }

private:
    explicit MenuDrawer(platform::View& list) : list_(list) {}
    void setOutlet(std::string_view name, platform::View& object) override;
    void performAction(std::string_view, platform::View&) override {}

    platform::View& list_;
    Outlet<platform::View> splitter_;   // of the list and the drawer
    Outlet<platform::View> listPlace_;  // in it
    Outlet<platform::View> drawer_;
    Outlet<platform::FontMenuView> menu_;
    Outlet<platform::TextField> counts_;
    std::unique_ptr<platform::LoadedInterface> interface_;
};
