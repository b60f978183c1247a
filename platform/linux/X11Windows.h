#pragma once

#include <QObject>
#include <QString>

#include <array>
#include <memory>
#include <optional>

struct xcb_connection_t;
class QSocketNotifier;

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
    ~X11Windows() override;

    /// The window that has the focus, or the leader of the group of windows for which it stands as
    /// a dialog. Absent when none has, and when the server is gone.
    std::optional<X11Window> activeWindow();

Q_SIGNALS:
    void activeWindowChanged();

private:
    enum AtomName { ActiveWindow, WindowType, Dock, Desktop, Notification, GtkId, KdeDesktopFile };
    static constexpr int atomCount = 7;

    struct Disconnect {
        void operator()(xcb_connection_t *connection) const;
    };

    void internAtoms();
    void readEvents();
    quint32 windowProperty(quint32 window, quint32 property);
    quint32 leaderOf(quint32 window);
    std::optional<X11Window> describe(quint32 window);

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    quint32 m_root = 0;
    std::array<quint32, atomCount> m_atoms = {};
    bool m_knowsProcesses = false;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
