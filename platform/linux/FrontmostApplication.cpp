#include "platform/FrontmostApplication.h"

#include "core/whenFinished.h"
#include "platform/linux/applications/ApplicationOfWindow.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/x11/X11Windows.h"

#include <QFuture>
#include <QGuiApplication>
#include <QtConcurrent>

#include <utility>

namespace
{

/// The application behind the X server's active window. What is installed is read in the
/// background, so nobody waits for it at the start of the program.
class X11FrontmostApplication : public FrontmostApplication
{
public:
    X11FrontmostApplication()
    {
        connect(&m_windows, &X11Windows::activeWindowChanged, this, [this] { announce(); });
        readEntries();
    }

    std::optional<Application> current() override
    {
        look();
        return m_isWaylandSession && !m_hasActiveWindow ? std::nullopt : m_application;
    }

private:
    void look()
    {
        const std::optional<X11Window> active = m_windows.activeWindow();
        m_hasActiveWindow = active.has_value();
        if (active && isWorkingWindow(*active)) {
            m_working = active;
            identify();
        }
        if (m_entries && m_entries->isOutdated())
            readEntries();
    }

    /// At once: a moment later the window's process may be gone.
    void identify()
    {
        if (!m_entries || !m_working)
            return;
        const Application application = applicationOf(*m_working, *m_entries);
        m_hasNews = m_hasNews || application != m_application;
        m_application = application;
    }

    /// Whoever asks in between hears the news twice, so that nobody misses what another was told.
    void announce()
    {
        const std::optional<Application> application = current();
        if (application && std::exchange(m_hasNews, false))
            Q_EMIT activated(*application);
    }

    void readEntries()
    {
        if (m_isReading)
            return;
        m_isReading = true;
        const auto reading =
            QtConcurrent::run(&DesktopEntries::read, DesktopEntries::standardFolders());
        whenFinished(reading, this, [this](const DesktopEntries &entries) {
            m_isReading = false;
            m_entries = entries;
            identify();
            announce();
        });
    }

    X11Windows m_windows;
    /// Absent until they have been read for the first time.
    std::optional<DesktopEntries> m_entries;
    bool m_isReading = false;
    /// The window that the user works in, or last worked in.
    std::optional<X11Window> m_working;
    std::optional<Application> m_application;
    bool m_hasNews = false;
    bool m_hasActiveWindow = false;
    /// There the X server knows nothing of the other windows: none active may well mean that
    /// another application is in front.
    const bool m_isWaylandSession = qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
};

class UnknownFrontmostApplication : public FrontmostApplication
{
public:
    std::optional<Application> current() override { return std::nullopt; }
};

} // namespace

std::unique_ptr<FrontmostApplication> makeFrontmostApplication()
{
    if (QGuiApplication::platformName() == u"xcb")
        return std::make_unique<X11FrontmostApplication>();
    return std::make_unique<UnknownFrontmostApplication>();
}
