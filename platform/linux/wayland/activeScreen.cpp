// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/activeScreen.h"

#include "platform/linux/wayland/LayerShell.h"
#include "platform/linux/wayland/qtWayland.h"

#include <wlr-layer-shell-client.h>

#include <QGuiApplication>
#include <QImage>
#include <QScreen>

#include <chrono>
#include <wayland-client-protocol.h>

using namespace std::chrono_literals;

namespace
{

constexpr auto longestWait = 500ms;

/// A panel of one transparent pixel.
class Probe
{
public:
    explicit Probe(const LayerShell &shell)
        : m_shell(shell)
        , m_surface(shell.makeSurface())
        , m_role(shell.makePanel(m_surface, nullptr))
    {
        listen();
        m_shell.ignoreMouse(m_surface);
        zwlr_layer_surface_v1_set_size(m_role, 1, 1);
        zwlr_layer_surface_v1_set_anchor(m_role, ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP |
                                                     ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
        wl_surface_commit(m_surface);
    }

    ~Probe()
    {
        zwlr_layer_surface_v1_destroy(m_role);
        wl_surface_destroy(m_surface);
        if (m_pixel)
            wl_buffer_destroy(m_pixel);
    }
    Q_DISABLE_COPY_MOVE(Probe)

    /// Null if the compositor shows it nowhere.
    wl_output *output()
    {
        if (!m_shell.waitFor(m_isAnswered, longestWait) || m_isClosed)
            return nullptr;
        m_isAnswered = false;
        QImage pixel(1, 1, QImage::Format_ARGB32_Premultiplied);
        pixel.fill(Qt::transparent);
        m_pixel = m_shell.makeBuffer(pixel);
        wl_surface_attach(m_surface, m_pixel, 0, 0);
        wl_surface_damage(m_surface, 0, 0, 1, 1);
        wl_surface_commit(m_surface);
        const auto isShown = [this] { return m_output || m_isClosed; };
        while (!isShown() && m_shell.waitFor(m_isAnswered, longestWait))
            m_isAnswered = false;
        return m_output;
    }

private:
    void listen();

    const LayerShell &m_shell;
    wl_surface *m_surface;
    zwlr_layer_surface_v1 *m_role;
    wl_buffer *m_pixel = nullptr;
    wl_output *m_output = nullptr;
    bool m_isClosed = false;
    bool m_isAnswered = false;
};

void Probe::listen()
{
    static const auto self = [](void *data) {
        auto *probe = static_cast<Probe *>(data);
        probe->m_isAnswered = true;
        return probe;
    };
    static const zwlr_layer_surface_v1_listener roleListener = {
        .configure =
            [](void *data, zwlr_layer_surface_v1 *role, uint32_t serial, uint32_t, uint32_t) {
                zwlr_layer_surface_v1_ack_configure(role, serial);
                self(data);
            },
        .closed = [](void *data, zwlr_layer_surface_v1 *) { self(data)->m_isClosed = true; },
    };
    static const wl_surface_listener surfaceListener = {
        .enter = [](void *data, wl_surface *, wl_output *output) { self(data)->m_output = output; },
        .leave = [](void *, wl_surface *, wl_output *) {},
    };
    zwlr_layer_surface_v1_add_listener(m_role, &roleListener, this);
    wl_surface_add_listener(m_surface, &surfaceListener, this);
}

} // namespace

QScreen *activeScreen(const LayerShell &shell)
{
    wl_output *const output = Probe(shell).output();
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (QScreen *screen : screens) {
        if (output && qtWayland::output(*screen) == output)
            return screen;
    }
    return nullptr;
}
