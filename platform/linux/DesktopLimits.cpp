// SPDX-License-Identifier: MIT
#include "platform/DesktopLimits.h"

#include "platform/linux/kwin/KWinFocusSource.h"
#include "platform/linux/status-item/StatusNotifierSearch.h"
#include "platform/linux/wayland/LayerShell.h"
#include "platform/linux/wayland/ToplevelFocusSource.h"
#include "platform/linux/wayland/WaylandConnection.h"

#include <QGuiApplication>
#include <QTimer>

#include <chrono>
#include <set>

using namespace std::chrono_literals;

namespace
{

/// At login the status bar may start after this program.
constexpr auto longestWaitForStatusBar = 15s;

class LinuxDesktopLimits : public DesktopLimits
{
public:
    LinuxDesktopLimits() : m_search(StatusNotifierSearch::Patience())
    {
        if (QGuiApplication::platformName() == u"wayland" && !LayerShell::find())
            m_missing.insert(DesktopLimit::TrayPlace);
        if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
            askCompositor();
        else if (QGuiApplication::platformName() != u"xcb")
            m_missing.insert(DesktopLimit::ApplicationInFront);
        lookForStatusBar();
    }

    QList<DesktopLimit> missing() const override { return {m_missing.begin(), m_missing.end()}; }

private:
    /// The same ways in which the application in front is found out.
    void askCompositor()
    {
        m_compositor = std::make_unique<WaylandConnection>();
        connect(m_compositor.get(), &WaylandConnection::globalsKnown, this, [this] {
            const bool canTell = ToplevelFocusSource::make(*m_compositor) != nullptr;
            m_compositor.release()->deleteLater();
            if (canTell)
                return;
            KWinFocusSource::find(this, [this](bool isThere) {
                if (!isThere)
                    setMissing(DesktopLimit::ApplicationInFront, true);
            });
        });
    }

    void lookForStatusBar()
    {
        connect(&m_search, &StatusNotifierSearch::found, this, [this] {
            m_hasStatusBar = true;
            setMissing(DesktopLimit::StatusItem, false);
        });
        QTimer::singleShot(longestWaitForStatusBar, this,
                           [this] { setMissing(DesktopLimit::StatusItem, !m_hasStatusBar); });
        m_search.start();
    }

    void setMissing(DesktopLimit limit, bool isMissing)
    {
        if (isMissing == m_missing.contains(limit))
            return;
        if (isMissing)
            m_missing.insert(limit);
        else
            m_missing.erase(limit);
        Q_EMIT changed();
    }

    std::set<DesktopLimit> m_missing;
    bool m_hasStatusBar = false;
    std::unique_ptr<WaylandConnection> m_compositor;
    StatusNotifierSearch m_search;
};

} // namespace

std::unique_ptr<DesktopLimits> makeDesktopLimits()
{
    return std::make_unique<LinuxDesktopLimits>();
}
