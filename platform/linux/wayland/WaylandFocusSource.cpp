// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandFocusSource.h"

#include "platform/linux/kwin/KWinFocusSource.h"
#include "platform/linux/wayland/ToplevelFocusSource.h"
#include "platform/linux/x11/X11FocusSource.h"

#include <QGuiApplication>

WaylandFocusSource::WaylandFocusSource()
{
    connect(&m_connection, &WaylandConnection::globalsKnown, this, &WaylandFocusSource::choose);
}

void WaylandFocusSource::update()
{
    if (m_source)
        m_source->update();
}

void WaylandFocusSource::choose()
{
    if (auto source = ToplevelFocusSource::make(m_connection))
        return use(std::move(source));
    KWinFocusSource::find(this, [this](bool isThere) {
        if (isThere)
            use(std::make_unique<KWinFocusSource>());
        else if (QGuiApplication::platformName() == u"xcb")
            use(std::make_unique<X11FocusSource>(false));
    });
}

void WaylandFocusSource::use(std::unique_ptr<FocusSource> source)
{
    m_source = std::move(source);
    connect(m_source.get(), &FocusSource::focusChanged, this, &FocusSource::focusChanged);
}
