#include "host/WindowOwners.h"

#ifdef TYPESLATE_HAVE_XCB

#include <xcb/xcb.h>

#include <QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr std::uint32_t kMostWindows = 1024, kLongestText = 1024;

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

struct Asked {
    xcb_get_property_cookie_t process, windowClass;
};

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    auto cookie = xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.data());
    Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

Owned<xcb_get_property_reply_t> valueOf(xcb_connection_t* connection, xcb_get_property_cookie_t cookie) {
    return {xcb_get_property_reply(connection, cookie, nullptr), &std::free};
}

std::vector<std::uint32_t> numbers(const xcb_get_property_reply_t* reply) {
    if (!reply || reply->format != 32) return {};
    auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
    return {first, first + reply->value_len};
}

// Two texts, each with a zero byte at its end: the name of the window's kind, and its class.
std::string classIn(const xcb_get_property_reply_t* reply) {
    if (!reply || reply->format != 8) return {};
    std::string_view texts(static_cast<const char*>(xcb_get_property_value(reply)), reply->value_len);
    std::string_view rest = texts.substr(std::min(texts.size(), texts.find('\0') + 1));
    return std::string(rest.substr(0, rest.find('\0')));
}

}  // namespace

// All questions are asked before the first answer is waited for. On Wayland a connection would start an X11 server.
std::vector<linux::WindowOwner> windowOwners() {
    std::vector<linux::WindowOwner> owners;
    if (QGuiApplication::platformName() != QLatin1String("xcb")) return owners;
    int screen = 0;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> owner(xcb_connect(nullptr, &screen), &xcb_disconnect);
    xcb_connection_t* connection = owner.get();
    if (xcb_connection_has_error(connection) != 0) return owners;
    const xcb_atom_t list = atom(connection, "_NET_CLIENT_LIST"), process = atom(connection, "_NET_WM_PID");
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    while (screen-- > 0 && screens.rem > 1) xcb_screen_next(&screens);
    auto get = [&](xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint32_t most) {
        return xcb_get_property(connection, 0, window, property, type, 0, most);
    };
    std::vector<Asked> asked;
    for (xcb_window_t window :
         numbers(valueOf(connection, get(screens.data->root, list, XCB_ATOM_WINDOW, kMostWindows)).get()))
        asked.push_back({get(window, process, XCB_ATOM_CARDINAL, 1),
                         get(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, kLongestText)});
    for (const Asked& each : asked) {
        const std::vector<std::uint32_t> id = numbers(valueOf(connection, each.process).get());
        owners.push_back({id.empty() ? 0 : id[0], classIn(valueOf(connection, each.windowClass).get())});
    }
    return owners;
}

}  // namespace host

#else

namespace host {

std::vector<linux::WindowOwner> windowOwners() { return {}; }

}  // namespace host

#endif
