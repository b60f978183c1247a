// SPDX-License-Identifier: MIT
#include "platform/linux/x11/TransparentWindow.h"

#include "platform/linux/x11/X11Connection.h"

#include <array>
#include <xcb/shape.h>

namespace
{

/// The visual for colours with alpha; 0 when the server has none.
xcb_visualid_t visualWithAlpha(const X11Connection &x11)
{
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(x11.get())); screen.rem > 0;
         xcb_screen_next(&screen)) {
        if (screen.data->root != x11.root())
            continue;
        for (auto depth = xcb_screen_allowed_depths_iterator(screen.data); depth.rem > 0;
             xcb_depth_next(&depth)) {
            const auto visual = xcb_depth_visuals_iterator(depth.data);
            if (depth.data->depth == TransparentWindow::depth && visual.rem > 0)
                return visual.data->visual_id;
        }
    }
    return 0;
}

} // namespace

TransparentWindow::TransparentWindow(X11Connection &x11, Manager manager) : m_x11(x11)
{
    const xcb_visualid_t visual = visualWithAlpha(m_x11);
    if (visual == 0)
        return;
    xcb_connection_t *const connection = m_x11.get();
    m_colormap = xcb_generate_id(connection);
    xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, m_colormap, m_x11.root(), visual);

    m_id = xcb_generate_id(connection);
    const uint32_t isUnmanaged = manager == Manager::Ignores ? 1 : 0;
    const std::array<uint32_t, 4> values = {0, 0, isUnmanaged, m_colormap};
    xcb_create_window(
        connection, depth, m_id, m_x11.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
        values.data());
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                         XCB_CLIP_ORDERING_UNSORTED, m_id, 0, 0, 0, nullptr);
}

TransparentWindow::~TransparentWindow()
{
    if (m_id == XCB_WINDOW_NONE)
        return;
    xcb_destroy_window(m_x11.get(), m_id);
    xcb_free_colormap(m_x11.get(), m_colormap);
    xcb_flush(m_x11.get());
}
