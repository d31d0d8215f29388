#include "host/panehost/X11Startup.h"

#ifdef TYPESLATE_HAVE_STARTUP_NOTIFICATION

#define SN_API_NOT_YET_FROZEN
#include <libsn/sn.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace host {
namespace {

void activate(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window, std::uint32_t time) {
    constexpr std::string_view kType = "_NET_ACTIVE_WINDOW";
    constexpr std::uint32_t kFromApplication = 1;
    auto cookie = xcb_intern_atom(connection, 0, kType.size(), kType.data());
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    if (atom) event.type = atom->atom;
    event.data.data32[0] = kFromApplication;
    event.data.data32[1] = time;
    xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
}

}  // namespace

bool endX11Startup(std::uint32_t window, const std::string& id) {
    // A connection of our own: how to reach the toolkit's differs between its versions.
    int screen = 0;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, &screen),
                                                                            &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) return false;
    SnDisplay* display = sn_xcb_display_new(connection.get(), nullptr, nullptr);
    SnLauncheeContext* start = sn_launchee_context_new(display, screen, id.c_str());
    sn_launchee_context_complete(start);
    bool hasTime = sn_launchee_context_get_id_has_timestamp(start);
    xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    if (hasTime)
        activate(connection.get(), root, window, static_cast<std::uint32_t>(sn_launchee_context_get_timestamp(start)));
    // Returns when the server has taken everything in: what is still under way is lost with the connection.
    std::free(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
    sn_launchee_context_unref(start);
    sn_display_unref(display);
    return hasTime;
}

}  // namespace host

#else

namespace host {

bool endX11Startup(std::uint32_t, const std::string&) { return false; }

}  // namespace host

#endif
