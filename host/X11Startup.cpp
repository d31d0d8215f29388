#include "host/X11Startup.h"

#ifdef TYPESLATE_HAVE_XCB

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace host {
namespace {

// A connection of our own: how to reach the toolkit's differs between its versions.
class Display {
public:
    Display() : connection_(xcb_connect(nullptr, nullptr)) {
        if (isOpen()) root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    }
    ~Display() { xcb_disconnect(connection_); }
    Display(const Display&) = delete;

    bool isOpen() const { return xcb_connection_has_error(connection_) == 0; }

    // From a window that exists no longer than this object.
    xcb_window_t newSender() {
        xcb_window_t window = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        return window;
    }

    xcb_client_message_event_t message(xcb_window_t window, std::string_view type, std::uint8_t format) {
        auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(type.size()), type.data());
        std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
            xcb_intern_atom_reply(connection_, cookie, nullptr), &std::free);
        xcb_client_message_event_t event = {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = format;
        event.window = window;
        if (atom) event.type = atom->atom;
        return event;
    }

    void sendToRoot(const xcb_client_message_event_t& event, std::uint32_t mask) {
        xcb_send_event(connection_, 0, root_, mask, reinterpret_cast<const char*>(&event));
    }
    // Returns when the server has taken everything in: what is still under way is lost with the connection.
    void finish() { std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr)); }

private:
    xcb_connection_t* const connection_;
    xcb_window_t root_ = XCB_NONE;
};

bool activate(Display& display, xcb_window_t window, const std::string& id) {
    constexpr std::string_view kTimeMark = "_TIME";
    constexpr std::uint32_t kFromApplication = 1;
    const std::size_t mark = id.rfind(kTimeMark);
    if (mark == std::string::npos) return false;
    auto event = display.message(window, "_NET_ACTIVE_WINDOW", 32);
    event.data.data32[0] = kFromApplication;
    event.data.data32[1] = static_cast<std::uint32_t>(std::strtoul(id.c_str() + mark + kTimeMark.size(), nullptr, 10));
    display.sendToRoot(event, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    return true;
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') result += '\\';
        result += c;
    }
    return result + '"';
}

// The text with its final zero byte, cut into pieces of the size of one event.
void broadcast(Display& display, const std::string& text) {
    const xcb_window_t sender = display.newSender();
    auto event = display.message(sender, "_NET_STARTUP_INFO_BEGIN", 8);
    const auto following = display.message(sender, "_NET_STARTUP_INFO", 8).type;
    constexpr std::size_t kPiece = sizeof event.data.data8;
    for (std::size_t at = 0; at <= text.size(); at += kPiece) {
        std::memset(event.data.data8, 0, kPiece);
        std::memcpy(event.data.data8, text.data() + at, std::min(kPiece, text.size() - at));
        display.sendToRoot(event, XCB_EVENT_MASK_PROPERTY_CHANGE);
        event.type = following;
    }
}

}  // namespace

bool endX11Startup(std::uint32_t window, const std::string& id) {
    Display display;
    if (!display.isOpen()) return false;
    broadcast(display, "remove: ID=" + quoted(id));
    const bool isAsked = activate(display, window, id);
    display.finish();
    return isAsked;
}

}  // namespace host

#else

namespace host {

bool endX11Startup(std::uint32_t, const std::string&) { return false; }

}  // namespace host

#endif
