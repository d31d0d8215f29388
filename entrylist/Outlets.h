// Interface objects and actions by name, for a controller that has a few of each.
#pragma once

#include "platform/Outlet.h"

#include <algorithm>
#include <string_view>

namespace entrylist {

template <typename Controller>
struct NamedOutlet {
    std::string_view name;
    void (*connect)(Controller&, platform::View&);
};

template <typename Controller>
struct NamedAction {
    std::string_view selector;
    void (Controller::*perform)();
};

// False: it is none of these.
template <typename Controller, typename Table>
bool connectNamed(Controller& controller, const Table& table, std::string_view name, platform::View& object) {
    auto found = std::ranges::find(table, name, &NamedOutlet<Controller>::name);
    if (found == std::end(table)) return false;
    found->connect(controller, object);
    return true;
}

template <typename Controller, typename Table>
bool performNamed(Controller& controller, const Table& table, std::string_view selector) {
    auto found = std::ranges::find(table, selector, &NamedAction<Controller>::selector);
    if (found == std::end(table)) return false;
    (controller.*found->perform)();
    return true;
}

}  // namespace entrylist
