// SPDX-License-Identifier: MIT
#include "platform/linux/x11/UnlistedBars.h"

#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11Properties.h"

#include <utility>
#include <vector>

namespace
{

/// A program may open windows without end.
constexpr qsizetype mostWindows = 1024;

/// The children of all these windows.
QList<quint32> childrenOf(const X11Connection &x11, const QList<quint32> &parents)
{
    std::vector<xcb_query_tree_cookie_t> asked;
    for (const quint32 parent : parents)
        asked.push_back(xcb_query_tree(x11.get(), parent));
    QList<quint32> children;
    for (const xcb_query_tree_cookie_t cookie : asked) {
        const X11Owned<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(x11.get(), cookie, nullptr));
        if (!tree)
            continue;
        const xcb_window_t *const first = xcb_query_tree_children(tree.get());
        for (int i = 0; i < tree->children_len && children.size() < mostWindows; ++i)
            children.append(first[i]);
    }
    return children;
}

bool isDock(const xcb_get_property_reply_t *types, xcb_atom_t dock)
{
    return types && types->format == 32 && types->value_len > 0 &&
           *static_cast<const xcb_atom_t *>(xcb_get_property_value(types)) == dock;
}

bool areOfOneProgram(const X11Connection &x11, xcb_window_t one, xcb_window_t other)
{
    const quint32 program = ~xcb_get_setup(x11.get())->resource_id_mask;
    return (one & program) == (other & program);
}

} // namespace

UnlistedBars::UnlistedBars() = default;
UnlistedBars::~UnlistedBars() = default;

QList<quint32> UnlistedBars::find()
{
    if (!m_x11) {
        m_x11 = std::make_unique<X11Connection>(XCB_EVENT_MASK_NO_EVENT);
        connect(m_x11.get(), &X11Connection::eventArrived, this, &UnlistedBars::readEvent);
    }
    if (!m_x11->isAlive())
        return {};
    // Before asking, so that no window is missed.
    listen(true);
    m_listens = true;
    const QList<quint32> atoms = m_x11->atoms({"_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DOCK"});
    const quint32 manager = X11Properties(m_x11->get(), m_x11->root())
                                .numbers(m_x11->root(), "_NET_SUPPORTING_WM_CHECK")
                                .value(0);
    QList<quint32> windows = childrenOf(*m_x11, {m_x11->root()});
    windows.append(childrenOf(*m_x11, windows));

    xcb_connection_t *const x11 = m_x11->get();
    std::vector<std::pair<xcb_get_property_cookie_t, xcb_get_window_attributes_cookie_t>> asked;
    for (const quint32 window : std::as_const(windows))
        asked.emplace_back(xcb_get_property(x11, 0, window, atoms[0], XCB_ATOM_ATOM, 0, 1),
                           xcb_get_window_attributes(x11, window));
    QList<quint32> found;
    for (size_t i = 0; i < asked.size(); ++i) {
        const X11Owned<xcb_get_property_reply_t> types(
            xcb_get_property_reply(x11, asked[i].first, nullptr));
        const X11Owned<xcb_get_window_attributes_reply_t> state(
            xcb_get_window_attributes_reply(x11, asked[i].second, nullptr));
        const quint32 window = windows[qsizetype(i)];
        if (!state || state->map_state != XCB_MAP_STATE_VIEWABLE || !isDock(types.get(), atoms[1]))
            continue;
        // Other programs' unmanaged bars come only while a key is pressed. awesome's own stay.
        if (!state->override_redirect || areOfOneProgram(*m_x11, window, manager))
            found.append(window);
    }
    m_x11->readEventsSoon();
    return found;
}

void UnlistedBars::listen(bool listens) const
{
    const quint32 events = listens ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(m_x11->get(), m_x11->root(), XCB_CW_EVENT_MASK, &events);
    xcb_flush(m_x11->get());
}

/// Who has been told asks again, or is not interested any more: then nobody need be woken up.
void UnlistedBars::readEvent(const xcb_generic_event_t *event)
{
    const int type = event->response_type & 0x7f;
    if ((type != XCB_MAP_NOTIFY && type != XCB_REPARENT_NOTIFY) || !std::exchange(m_listens, false))
        return;
    listen(false);
    Q_EMIT mayHaveCome();
}
