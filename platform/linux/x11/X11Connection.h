// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <xcb/xcb.h>

class QDeadlineTimer;
class QSocketNotifier;

/// Frees what the X server has sent; the receiver owns it.
struct X11Free {
    void operator()(void *memory) const { std::free(memory); }
};
template <typename Type>
using X11Owned = std::unique_ptr<Type, X11Free>;

/// A separate connection to the X server: its errors, such as a window that has died or a server
/// that is gone, affect nothing else. Main thread.
class X11Connection : public QObject
{
    Q_OBJECT
public:
    /// Asks for the root window's events in this mask.
    explicit X11Connection(quint32 rootEvents);
    ~X11Connection() override;

    /// False when there is no server (any more). Then no requests are allowed.
    bool isAlive() const;

    xcb_connection_t *get() const { return m_connection.get(); }
    quint32 root() const { return m_root; }
    int screenNumber() const { return m_screenNumber; }

    /// The atoms with these names, in one round trip.
    QList<quint32> atoms(std::initializer_list<QByteArray> names);

    /// Call it after taking replies: events may have come with them that the socket does not signal
    /// any more.
    void readEventsSoon();

    /// Waits for the server and reads what it has sent. False when nothing came in time.
    bool waitForInput(const QDeadlineTimer &deadline);

Q_SIGNALS:
    void eventArrived(const xcb_generic_event_t *event);

    /// The server has sent events, all of which were passed on, or replies.
    void inputRead();

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const;
    };

    void readEvents();

    int m_screenNumber = 0;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    quint32 m_root = 0;
    std::unique_ptr<QSocketNotifier> m_notifier;
    bool m_willRead = false;
};
