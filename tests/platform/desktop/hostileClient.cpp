// SPDX-License-Identifier: MIT
/// A malicious client of the X server. It runs until it is killed.
///
/// usage: hostileClient flood     the active window changes as fast as possible
///               hostileClient mayflies  the same, and each window dies at once
///               hostileClient giant     the active window's class is 4 MB long

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <xcb/xcb.h>

namespace
{

struct Client {
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_atom_t activeWindow = atom("_NET_ACTIVE_WINDOW");

    xcb_atom_t atom(std::string_view name) const
    {
        const auto cookie =
            xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.data());
        const std::unique_ptr<xcb_intern_atom_reply_t, void (*)(void *)> reply(
            xcb_intern_atom_reply(connection, cookie, nullptr), std::free);
        return reply->atom;
    }

    xcb_window_t makeWindow(const std::string &windowClass) const
    {
        const xcb_window_t window = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        const std::string value = windowClass + '\0' + windowClass + '\0';
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS,
                            XCB_ATOM_STRING, 8, static_cast<uint32_t>(value.size()), value.data());
        return window;
    }

    void activate(xcb_window_t window) const
    {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, activeWindow, XCB_ATOM_WINDOW,
                            32, 1, &window);
    }

    bool flush() const
    {
        return xcb_flush(connection) > 0 && xcb_connection_has_error(connection) == 0;
    }
};

void flood(const Client &client)
{
    const xcb_window_t windows[] = {client.makeWindow("paint"), client.makeWindow("Fox-esr")};
    do {
        for (int i = 0; i < 100; ++i)
            client.activate(windows[i % 2]);
    } while (client.flush());
}

void breedMayflies(const Client &client)
{
    do {
        const xcb_window_t window = client.makeWindow("paint");
        client.activate(window);
        xcb_destroy_window(client.connection, window);
    } while (client.flush());
}

void showGiant(const Client &client)
{
    client.activate(client.makeWindow(std::string(4'000'000, 'w')));
    client.flush();
    while (xcb_wait_for_event(client.connection)) {
    }
}

} // namespace

int main(int, char *argv[])
{
    const Client client;
    const std::string_view what = argv[1];
    if (what == "flood")
        flood(client);
    else if (what == "mayflies")
        breedMayflies(client);
    else
        showGiant(client);
    return 0;
}
