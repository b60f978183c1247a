// SPDX-License-Identifier: MIT
#include "tests/world/WindowManager.h"

#include <QProcess>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <xcb/composite.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20'000; // milliseconds

/// A connection for one request or message.
class Server
{
public:
    Server() : m_connection(xcb_connect(nullptr, nullptr)) {}
    ~Server() { xcb_disconnect(m_connection); }
    Q_DISABLE_COPY_MOVE(Server)

    xcb_window_t root() const
    {
        return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }

    xcb_atom_t atom(const char *name) const
    {
        const auto cookie =
            xcb_intern_atom(m_connection, false, static_cast<uint16_t>(std::strlen(name)), name);
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(m_connection, cookie, nullptr);
        const xcb_atom_t result = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
        std::free(reply);
        return result;
    }

    bool isOwned(const char *selection) const
    {
        const auto cookie = xcb_get_selection_owner(m_connection, atom(selection));
        auto *reply = xcb_get_selection_owner_reply(m_connection, cookie, nullptr);
        const bool result = reply && reply->owner != XCB_NONE;
        std::free(reply);
        return result;
    }

    /// Sent like a request of a pager or a task bar for the user.
    void send(WId window, const char *message, std::initializer_list<quint32> values) const
    {
        xcb_client_message_event_t event = {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = static_cast<xcb_window_t>(window);
        event.type = atom(message);
        std::copy(values.begin(), values.end(), event.data.data32);
        xcb_send_event(m_connection, false, root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char *>(&event));
        // A server may drop unread requests when the connection ends.
        std::free(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

private:
    xcb_connection_t *m_connection;
};

constexpr quint32 fromPager = 2;

pid_t managerProcess()
{
    const int process = qEnvironmentVariableIntValue("VELMORA_WORLD_MANAGER_PROCESS");
    if (process <= 0)
        qFatal("the world has no window manager");
    return process;
}

} // namespace

void WindowManager::setFullScreen(WId window, bool fullScreen)
{
    const Server server;
    server.send(window, "_NET_WM_STATE",
                {fullScreen, server.atom("_NET_WM_STATE_FULLSCREEN"), 0, fromPager});
}

void WindowManager::showDesktop(bool shown)
{
    const Server server;
    server.send(server.root(), "_NET_SHOWING_DESKTOP", {shown});
}

void WindowManager::sendToWorkspace(WId window, quint32 workspace)
{
    Server().send(window, "_NET_WM_DESKTOP", {workspace, fromPager});
}

WindowManager::Standstill::Standstill()
{
    ::kill(managerProcess(), SIGSTOP);
}

WindowManager::Standstill::~Standstill()
{
    ::kill(managerProcess(), SIGCONT);
}

struct Compositor::Process {
    QProcess picom;
};

Compositor::Compositor() : m_process(std::make_unique<Process>())
{
    // Without a settings file it draws no shadows of its own.
    m_process->picom.start(u"picom"_s,
                           {u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s});
    if (!QTest::qWaitFor(isRunning, patience))
        qWarning("picom does not start");
}

Compositor::~Compositor()
{
    m_process->picom.terminate();
    if (!QTest::qWaitFor([this] { return m_process->picom.state() == QProcess::NotRunning; },
                         patience))
        qWarning("picom does not end");
}

bool Compositor::isRunning()
{
    return Server().isOwned("_NET_WM_CM_S0");
}

IdleCompositor::IdleCompositor() : m_connection(xcb_connect(nullptr, nullptr))
{
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    const xcb_window_t owner = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, owner, m_root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(m_connection, owner, Server().atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    xcb_flush(m_connection);
    if (!QTest::qWaitFor(Compositor::isRunning, patience))
        qWarning("nobody can be the compositor");
}

IdleCompositor::~IdleCompositor()
{
    xcb_disconnect(m_connection);
}

void IdleCompositor::takeWindows()
{
    std::free(xcb_composite_query_version_reply(
        m_connection, xcb_composite_query_version(m_connection, 0, 2), nullptr));
    xcb_composite_redirect_subwindows(m_connection, m_root, XCB_COMPOSITE_REDIRECT_MANUAL);
    xcb_flush(m_connection);
}
