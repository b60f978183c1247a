// SPDX-License-Identifier: MIT
#include "tests/world/FramePlaces.h"

#include <xcb/xcb.h>

#include <cstdlib>

FramePlaces::FramePlaces(WId window) : m_connection(xcb_connect(nullptr, nullptr))
{
    const quint32 events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, frameOf(static_cast<quint32>(window)),
                                 XCB_CW_EVENT_MASK, &events);
    xcb_flush(m_connection);
}

FramePlaces::~FramePlaces()
{
    xcb_disconnect(m_connection);
}

quint32 FramePlaces::frameOf(quint32 window)
{
    for (;;) {
        const auto cookie = xcb_query_tree(m_connection, window);
        xcb_query_tree_reply_t *tree = xcb_query_tree_reply(m_connection, cookie, nullptr);
        if (!tree)
            return window;
        const quint32 parent = tree->parent;
        const bool isTop = parent == tree->root;
        std::free(tree);
        if (isTop)
            return window;
        window = parent;
    }
}

QList<QRect> FramePlaces::read()
{
    while (xcb_generic_event_t *event = xcb_poll_for_event(m_connection)) {
        if ((event->response_type & 0x7f) == XCB_CONFIGURE_NOTIFY) {
            const auto *place = reinterpret_cast<xcb_configure_notify_event_t *>(event);
            m_places.append({place->x, place->y, place->width, place->height});
        }
        std::free(event);
    }
    return m_places;
}
