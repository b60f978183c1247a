// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>

#include <memory>
#include <wayland-client-protocol.h>

class QDeadlineTimer;
class QSocketNotifier;

/// A connection of one's own to the Wayland compositor that WAYLAND_DISPLAY names: whatever goes
/// wrong on it harms nobody else. It never waits for the compositor. Main thread.
class WaylandConnection : public QObject
{
    Q_OBJECT
public:
    WaylandConnection();
    ~WaylandConnection() override;

    /// False when there is no compositor (any more). Then nothing may be asked.
    bool isAlive() const { return m_display && !m_hasEnded; }

    /// Binds the compositor's object of this kind, up to `version`; null when it has none, and
    /// before globalsKnown(). Whoever has bound it destroys it before this object.
    template <typename Type>
    Type *bind(const wl_interface &interface, uint32_t version) const
    {
        return static_cast<Type *>(bindGlobal(interface, version));
    }

    /// Takes in what the compositor has sent up to now.
    void update();

    /// Waits for the compositor and takes in what it has sent. False when nothing has come in time.
    bool waitForInput(const QDeadlineTimer &deadline);

    /// Sends what has been asked for.
    void flush();

    /// Tells when the compositor has dealt with all that was asked of it so far.
    wl_callback *sync() { return wl_display_sync(m_display); }

Q_SIGNALS:
    /// What the compositor has is known: nothing where there is none.
    void globalsKnown();

    /// The compositor has sent something, all of which has been handed on.
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
    wl_callback *m_globalsTold = nullptr;
    QHash<QByteArray, Global> m_globals;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
