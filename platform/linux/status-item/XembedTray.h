// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Connection.h"

#include <QObject>

/// The older kind of tray, in which programs embed X windows. Main thread.
class XembedTray : public QObject
{
    Q_OBJECT
public:
    XembedTray();

    /// Whether a program provides such a tray now. One round trip to the X server.
    bool isThere();

Q_SIGNALS:
    void appeared();

private:
    void readEvent(const xcb_generic_event_t *event);

    X11Connection m_connection;
    quint32 m_managerAtom = 0;
    quint32 m_selectionAtom = 0;
};
