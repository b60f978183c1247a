#pragma once

#include "platform/linux/status-item/XembedTray.h"

#include <QObject>

#include <chrono>
#include <memory>
#include <optional>

/// Waits until the session has a status bar. Qt looks for one when the program first touches its
/// tray icon, and keeps to what it then found until the program ends; a session that has just
/// begun may have its status bar only seconds later. So nobody touches it before found().
///
/// A host of status items is taken whenever there is one. The older tray is taken where no host
/// has come in time. Main thread; nothing blocks on another program.
class StatusNotifierSearch : public QObject
{
    Q_OBJECT
public:
    enum class StatusBar {
        Host,  ///< of status items, over the session bus
        Older, ///< a tray that embeds windows
    };

    struct Patience {
        /// With an older tray, and nobody on the bus who keeps a list of hosts.
        std::chrono::milliseconds withoutWatcher = std::chrono::seconds(2);
        /// With an older tray, and a list of hosts that is empty.
        std::chrono::milliseconds withoutHost = std::chrono::seconds(30);
    };

    explicit StatusNotifierSearch(Patience patience);
    ~StatusNotifierSearch() override;

    /// Called once.
    void start();

Q_SIGNALS:
    /// Told once.
    void found(StatusNotifierSearch::StatusBar statusBar);

private Q_SLOTS:
    void askForHost();

private:
    void listenToBus();
    void considerOlderTray();
    void finish(StatusBar statusBar);

    Patience m_patience;
    std::chrono::milliseconds m_waited{0};
    bool m_isFound = false;
    /// Whether somebody on the bus keeps a list of hosts; absent until that is known.
    std::optional<bool> m_hasWatcher;
    std::unique_ptr<XembedTray> m_olderTray;
};
