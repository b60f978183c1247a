#pragma once

#include "platform/linux/x11/X11Connection.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

/// What a window on the X server says of the application that it belongs to.
struct X11Window {
    quint32 id = 0;
    QString instance;
    QString windowClass;
    /// The application ids that some toolkits note on their windows.
    QString gtkApplicationId;
    QString desktopFile;
    /// The process as the X server knows it; 0 when it runs elsewhere or the server can't tell.
    qint64 processId = 0;
    /// False for panels, desktops, notifications and the like.
    bool isOrdinary = true;
};

/// The windows of an X server, as an ordinary client sees them, over a connection of its own:
/// a window that dies while it is looked at is no error. Main thread; a call costs one to three
/// round trips to the server.
class X11Windows : public QObject
{
    Q_OBJECT
public:
    X11Windows();

    /// The window that has the focus, or the leader of the group of windows for which it stands as
    /// a dialog. Absent when none has, and when the server is gone.
    std::optional<X11Window> activeWindow();

Q_SIGNALS:
    void activeWindowChanged();

private:
    enum AtomName { ActiveWindow, WindowType, Dock, Desktop, Notification, GtkId, KdeDesktopFile };

    void readEvent(const xcb_generic_event_t *event);
    quint32 windowProperty(quint32 window, quint32 property);
    quint32 leaderOf(quint32 window);
    std::optional<X11Window> describe(quint32 window);

    X11Connection m_connection;
    /// By their names above.
    QList<quint32> m_atoms;
    bool m_knowsProcesses = false;
};
