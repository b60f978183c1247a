#pragma once

#include "platform/linux/x11/X11Connection.h"

#include <QObject>

/// The tray of the X server's screen in which windows are embedded, as it was before status items
/// spoke over the session bus. Main thread.
class XembedTray : public QObject
{
    Q_OBJECT
public:
    XembedTray();

    /// Whether some program is such a tray now; one round trip to the server.
    bool isThere();

Q_SIGNALS:
    void appeared();

private:
    void readEvent(const xcb_generic_event_t *event);

    X11Connection m_connection;
    quint32 m_managerAtom = 0;
    quint32 m_selectionAtom = 0;
};
