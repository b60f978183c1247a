// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/status-item/XembedTray.h"

#include <QObject>

#include <chrono>
#include <memory>
#include <optional>

/// Waits until the session has a status bar. Qt looks for one only once, when the program first
/// uses its tray icon, but right after login the status bar may start seconds later. So the tray
/// icon must not be used before found().
///
/// A status notifier host is used as soon as there is one, the XEmbed tray when no host has come in
/// time. Main thread; never waits for another program.
class StatusNotifierSearch : public QObject
{
    Q_OBJECT
public:
    enum class StatusBar {
        Host,  ///< for status notifier items, over the session bus
        Older, ///< a tray that embeds windows
    };

    struct Patience {
        /// How long to wait for a host when there is an XEmbed tray and no watcher on the bus.
        std::chrono::milliseconds withoutWatcher = std::chrono::seconds(2);
        /// How long to wait for a host when there is an XEmbed tray and a watcher without hosts.
        std::chrono::milliseconds withoutHost = std::chrono::seconds(30);
    };

    explicit StatusNotifierSearch(Patience patience);
    ~StatusNotifierSearch() override;

    /// Call it once.
    void start();

Q_SIGNALS:
    /// Emitted once.
    void found(StatusNotifierSearch::StatusBar statusBar);

private Q_SLOTS:
    void askForHost();

private:
    void listenToBus();
    void considerXembedTray();
    void finish(StatusBar statusBar);

    Patience m_patience;
    std::chrono::milliseconds m_waited{0};
    bool m_isFound = false;
    /// Whether there is a watcher on the bus; absent until that is known.
    std::optional<bool> m_hasWatcher;
    std::unique_ptr<XembedTray> m_xembedTray;
};
