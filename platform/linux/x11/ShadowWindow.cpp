// SPDX-License-Identifier: MIT
#include "platform/linux/x11/ShadowWindow.h"

#include "platform/linux/shadow/softShadow.h"
#include "platform/linux/x11/TransparentWindow.h"
#include "platform/linux/x11/X11Connection.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

/// Sent in pieces, because the size of a request is limited.
constexpr int rowsAPiece = 32;

/// Keeps the compositor from adding its own shadow to the shadow.
void forbidFurtherShadow(X11Connection &x11, xcb_window_t window)
{
    const uint32_t none = 0;
    xcb_change_property(x11.get(), XCB_PROP_MODE_REPLACE, window,
                        x11.atoms({"_COMPTON_SHADOW"}).first(), XCB_ATOM_CARDINAL, 32, 1, &none);
}

} // namespace

ShadowWindow::ShadowWindow(X11Connection &x11) : m_x11(x11) {}

ShadowWindow::~ShadowWindow() = default;

void ShadowWindow::showBelow(const Caster &caster)
{
    if (!m_window) {
        m_window = std::make_unique<TransparentWindow>(m_x11, TransparentWindow::Manager::Ignores);
        forbidFurtherShadow(m_x11, m_window->id());
    }
    if (m_window->id() == XCB_WINDOW_NONE)
        return;
    const int reach = int(std::ceil(shadowReach * caster.scale));
    const QRect place = caster.place.adjusted(-reach, -reach, reach, reach);
    draw(caster);
    const std::array<uint32_t, 6> values = {uint32_t(place.x()),     uint32_t(place.y()),
                                            uint32_t(place.width()), uint32_t(place.height()),
                                            caster.window,           XCB_STACK_MODE_BELOW};
    xcb_configure_window(m_x11.get(), m_window->id(),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_SIBLING |
                             XCB_CONFIG_WINDOW_STACK_MODE,
                         values.data());
    xcb_map_window(m_x11.get(), m_window->id());
    m_isMapped = true;
    xcb_flush(m_x11.get());
}

void ShadowWindow::hide()
{
    if (!m_isMapped)
        return;
    xcb_unmap_window(m_x11.get(), m_window->id());
    xcb_flush(m_x11.get());
    m_isMapped = false;
}

/// Draws it as the window's background, which the server then repaints by itself.
void ShadowWindow::draw(const Caster &caster)
{
    if (m_drawnSize == caster.place.size() && m_drawnScale == caster.scale)
        return;
    m_drawnSize = caster.place.size();
    m_drawnScale = caster.scale;
    const QImage image = softShadow(m_drawnSize, caster.radius, caster.scale);

    xcb_connection_t *const connection = m_x11.get();
    const auto width = static_cast<uint16_t>(image.width());
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    xcb_create_pixmap(connection, TransparentWindow::depth, pixmap, m_window->id(), width,
                      static_cast<uint16_t>(image.height()));
    const xcb_gcontext_t context = xcb_generate_id(connection);
    xcb_create_gc(connection, context, pixmap, 0, nullptr);
    for (int row = 0; row < image.height(); row += rowsAPiece) {
        const int count = std::min(rowsAPiece, image.height() - row);
        xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, width,
                      static_cast<uint16_t>(count), 0, static_cast<int16_t>(row), 0,
                      TransparentWindow::depth, static_cast<uint32_t>(count * image.bytesPerLine()),
                      image.constScanLine(row));
    }
    xcb_change_window_attributes(connection, m_window->id(), XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(connection, 0, m_window->id(), 0, 0, 0, 0);
    xcb_free_gc(connection, context);
    xcb_free_pixmap(connection, pixmap);
}
