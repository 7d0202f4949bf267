#include "support/DeskClient.h"

#include <poll.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>

DeskClient::DeskClient(const std::string& display) {
    int screen = 0;
    c = xcb_connect(display.c_str(), &screen);
    if (xcb_connection_has_error(c)) return;
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(c));
    for (int i = 0; i < screen && it.rem; ++i) xcb_screen_next(&it);
    if (it.rem) rootWindow = it.data->root;
}

DeskClient::~DeskClient() {
    if (c) xcb_disconnect(c);
}

bool DeskClient::connected() const { return c && !xcb_connection_has_error(c) && rootWindow; }

uint32_t DeskClient::atom(const std::string& name) {
    auto cookie = xcb_intern_atom(c, 0, static_cast<uint16_t>(name.size()), name.c_str());
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(xcb_intern_atom_reply(c, cookie, nullptr),
                                                                         &std::free);
    return reply ? reply->atom : 0;
}

uint32_t DeskClient::window(std::optional<uint32_t> pid) {
    const uint32_t w = xcb_generate_id(c);
    xcb_create_window(c, XCB_COPY_FROM_PARENT, w, rootWindow, 0, 0, 40, 30, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    if (pid) set(w, "_NET_WM_PID", "CARDINAL", {*pid});
    return w;
}

void DeskClient::destroy(uint32_t window) { xcb_destroy_window(c, window); }

void DeskClient::set(uint32_t window, const std::string& property, const std::string& type,
                     const std::vector<uint32_t>& values) {
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 32,
                        static_cast<uint32_t>(values.size()), values.data());
}

void DeskClient::setText(uint32_t window, const std::string& property, const std::string& text) {
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, atom(property), XCB_ATOM_STRING, 8,
                        static_cast<uint32_t>(text.size()), text.data());
}

void DeskClient::remove(uint32_t window, const std::string& property) {
    xcb_delete_property(c, window, atom(property));
}

void DeskClient::setActive(uint32_t window) { set(rootWindow, "_NET_ACTIVE_WINDOW", "WINDOW", {window}); }

void DeskClient::setClients(const std::vector<uint32_t>& windows) {
    set(rootWindow, "_NET_CLIENT_LIST", "WINDOW", windows);
}

bool DeskClient::manage() {
    const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    auto cookie = xcb_change_window_attributes_checked(c, rootWindow, XCB_CW_EVENT_MASK, &mask);
    xcb_generic_error_t* error = xcb_request_check(c, cookie);
    std::free(error);
    return !error;
}

std::vector<uint32_t> DeskClient::closeRequests(std::size_t count, double seconds) {
    const uint32_t closeAtom = atom("_NET_CLOSE_WINDOW");
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (closes.size() < count) {
        xcb_generic_event_t* event = xcb_poll_for_event(c);
        if (!event) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0 || xcb_connection_has_error(c)) break;
            pollfd p{xcb_get_file_descriptor(c), POLLIN, 0};
            poll(&p, 1, static_cast<int>(left.count()));
            continue;
        }
        if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE) {
            auto* m = reinterpret_cast<xcb_client_message_event_t*>(event);
            // Source indication 2: a pager, acting for the user.
            if (m->type == closeAtom && m->format == 32 && m->data.data32[1] == 2) closes.push_back(m->window);
        }
        std::free(event);
    }
    return closes;
}

void DeskClient::sync() { std::free(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr)); }
