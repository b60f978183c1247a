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

/// What the X server has sent and the receiver owns.
struct X11Free {
    void operator()(void *memory) const { std::free(memory); }
};
template <typename Type>
using X11Owned = std::unique_ptr<Type, X11Free>;

/// A connection of one's own to the X server: whatever goes wrong on it, a window that has died or
/// a server that has gone, harms nobody else. Main thread.
class X11Connection : public QObject
{
    Q_OBJECT
public:
    /// Asks for the root window's events of this mask.
    explicit X11Connection(quint32 rootEvents);
    ~X11Connection() override;

    /// False when there is no server (any more). Then nothing may be asked.
    bool isAlive() const;

    xcb_connection_t *get() const { return m_connection.get(); }
    quint32 root() const { return m_root; }
    int screenNumber() const { return m_screenNumber; }

    /// The atoms of these names, in one round trip.
    QList<quint32> atoms(std::initializer_list<QByteArray> names);

    /// To be called after replies have been taken: they may have brought events along, of which the
    /// socket will not tell any more.
    void readEventsSoon();

    /// Waits for the server and reads what it has sent. False when nothing has come in time.
    bool waitForInput(const QDeadlineTimer &deadline);

Q_SIGNALS:
    void eventArrived(const xcb_generic_event_t *event);

    /// The server has sent something: events, all of which have been told, or replies.
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
