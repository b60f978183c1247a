// SPDX-License-Identifier: MIT
#include "platform/linux/x11/WindowOutline.h"

#include "platform/linux/x11/CompositorWatch.h"
#include "platform/linux/x11/X11Connection.h"

#include <QWindow>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>
#include <xcb/shape.h>

namespace
{

/// The rows of a rectangle with rounded corners. A pixel is inside when its centre is.
std::vector<xcb_rectangle_t> roundedRows(QSize size, double radius)
{
    const auto width = static_cast<uint16_t>(size.width());
    const int curved = std::min(int(std::ceil(radius)), size.height() / 2);
    std::vector<xcb_rectangle_t> rows;
    const auto add = [&rows, width](int y, int cut, int height) {
        rows.push_back(
            {int16_t(cut), int16_t(y), uint16_t(std::max(0, width - 2 * cut)), uint16_t(height)});
    };
    const auto cutOf = [radius](int row) {
        const double up = radius - row - 0.5;
        return int(std::round(radius - std::sqrt(std::max(0.0, radius * radius - up * up))));
    };
    for (int row = 0; row < curved; ++row)
        add(row, cutOf(row), 1);
    add(curved, 0, size.height() - 2 * curved);
    for (int row = curved - 1; row >= 0; --row)
        add(size.height() - 1 - row, cutOf(row), 1);
    return rows;
}

xcb_window_t parentOf(const X11Connection &x11, xcb_window_t window)
{
    const X11Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(x11.get(), xcb_query_tree(x11.get(), window), nullptr));
    return tree ? tree->parent : xcb_window_t(XCB_WINDOW_NONE);
}

xcb_window_t topLevelOf(const X11Connection &x11, xcb_window_t window)
{
    for (;;) {
        const xcb_window_t parent = parentOf(x11, window);
        if (parent == x11.root() || parent == XCB_WINDOW_NONE)
            return window;
        window = parent;
    }
}

void listen(const X11Connection &x11, xcb_window_t window, bool listens)
{
    const uint32_t events = listens ? XCB_EVENT_MASK_STRUCTURE_NOTIFY : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(x11.get(), window, XCB_CW_EVENT_MASK, &events);
}

} // namespace

/// As the server reports it, in device pixels.
struct WindowOutline::Geometry {
    QRect place;
    bool isVisible = false;

    Geometry(const X11Connection &x11, xcb_window_t window)
    {
        xcb_connection_t *const connection = x11.get();
        const auto sizeCookie = xcb_get_geometry(connection, window);
        const auto placeCookie = xcb_translate_coordinates(connection, window, x11.root(), 0, 0);
        const auto stateCookie = xcb_get_window_attributes(connection, window);
        const X11Owned<xcb_get_geometry_reply_t> size(
            xcb_get_geometry_reply(connection, sizeCookie, nullptr));
        const X11Owned<xcb_translate_coordinates_reply_t> corner(
            xcb_translate_coordinates_reply(connection, placeCookie, nullptr));
        const X11Owned<xcb_get_window_attributes_reply_t> state(
            xcb_get_window_attributes_reply(connection, stateCookie, nullptr));
        if (!size || !corner || !state)
            return;
        place = {corner->dst_x, corner->dst_y, size->width, size->height};
        isVisible = state->map_state == XCB_MAP_STATE_VIEWABLE;
    }
};

WindowOutline::WindowOutline(QWindow &window, double radius, X11Connection &x11,
                             CompositorWatch &compositor)
    : m_window(&window)
    , m_id(static_cast<xcb_window_t>(window.winId()))
    , m_radius(radius)
    , m_x11(x11)
    , m_compositor(compositor)
    , m_shadow(x11)
    , m_frame(m_id)
{
    listen(m_x11, m_id, true);
    connect(&m_x11, &X11Connection::eventArrived, this, &WindowOutline::readEvent);
    connect(&m_compositor, &CompositorWatch::changed, this, &WindowOutline::update);
    update();
}

void WindowOutline::readEvent(const xcb_generic_event_t *event)
{
    switch (event->response_type & 0x7f) {
    case XCB_CONFIGURE_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        updateSoon();
        break;
    default:
        break;
    }
}

/// One update for all events that arrived together.
void WindowOutline::updateSoon()
{
    if (m_isOutdated)
        return;
    m_isOutdated = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_isOutdated)
                update();
        },
        Qt::QueuedConnection);
}

void WindowOutline::update()
{
    m_isOutdated = false;
    if (!m_window || !m_x11.isAlive())
        return;
    followFrame();
    const bool isBlended = m_compositor.isRunning();
    const Geometry geometry(m_x11, m_id);
    cutCorners(isBlended ? QSize() : geometry.place.size());
    if (isBlended && geometry.isVisible)
        m_shadow.showBelow({m_frame, geometry.place, m_radius, m_window->devicePixelRatio()});
    else
        m_shadow.hide();
    xcb_flush(m_x11.get());
    m_x11.readEventsSoon();
}

void WindowOutline::followFrame()
{
    const xcb_window_t frame = topLevelOf(m_x11, m_id);
    if (frame == m_frame)
        return;
    if (m_frame != m_id)
        listen(m_x11, m_frame, false);
    m_frame = frame;
    if (m_frame != m_id)
        listen(m_x11, m_frame, true);
}

/// An empty size means no cut. Window managers may reposition the window after a new shape, which
/// is reported as a change.
void WindowOutline::cutCorners(QSize size)
{
    const double radius = m_radius * m_window->devicePixelRatio();
    if (std::exchange(m_cutSize, size) == size && std::exchange(m_cutRadius, radius) == radius)
        return;
    m_cutRadius = radius;
    if (size.isEmpty()) {
        xcb_shape_mask(m_x11.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, m_id, 0, 0,
                       XCB_PIXMAP_NONE);
        return;
    }
    const auto rows = roundedRows(size, radius);
    xcb_shape_rectangles(m_x11.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_YX_BANDED, m_id, 0, 0, uint32_t(rows.size()),
                         rows.data());
}
