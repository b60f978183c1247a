// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>

#include <memory>
#include <wayland-client-protocol.h>

class QDeadlineTimer;
class QSocketNotifier;

/// A separate connection to the Wayland compositor that WAYLAND_DISPLAY names: its errors affect
/// nothing else. Only waitForInput() waits for the compositor. Main thread.
class WaylandConnection : public QObject
{
    Q_OBJECT
public:
    WaylandConnection();
    ~WaylandConnection() override;

    /// False when there is no compositor (any more). Then no requests are allowed.
    bool isAlive() const { return m_display && !m_hasEnded; }

    /// Binds the compositor's global of this kind, up to `version`; null when there is none, and
    /// before globalsKnown(). The caller destroys it before this object.
    template <typename Type>
    Type *bind(const wl_interface &interface, uint32_t version) const
    {
        return static_cast<Type *>(bindGlobal(interface, version));
    }

    /// Processes what the compositor has sent so far.
    void update();

    /// Waits for the compositor and processes what it has sent. False when nothing came in time.
    bool waitForInput(const QDeadlineTimer &deadline);

    /// Sends the requests made so far.
    void flush();

    /// Signals when the compositor has processed all requests so far.
    wl_callback *sync() { return wl_display_sync(m_display); }

Q_SIGNALS:
    /// The compositor's globals are known; without a compositor there are none.
    void globalsKnown();

    /// The compositor has sent something, and all of it has been handed on.
    void inputRead();

private:
    struct Global {
        uint32_t name;
        uint32_t version;
    };

    void *bindGlobal(const wl_interface &interface, uint32_t version) const;
    void askForGlobals();
    bool readEvents();
    void end();

    wl_display *m_display;
    bool m_hasEnded = false;
    wl_registry *m_registry = nullptr;
    wl_callback *m_globalsSync = nullptr;
    QHash<QByteArray, Global> m_globals;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
