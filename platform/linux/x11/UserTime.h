// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QWindow>

#include <functional>
#include <memory>
#include <vector>

/// When the user was last at this program, as Qt knows it from X11's events. Window managers that
/// guard the focus hold back a window whose program the user left before he was elsewhere; a
/// program that has just been opened again has got no event yet that says so. Main thread.
class UserTime : public QAbstractNativeEventFilter
{
public:
    UserTime();
    ~UserTime() override;
    Q_DISABLE_COPY_MOVE(UserTime)

    /// Goes on, from the event loop, with the X server's present time in milliseconds; 0 where
    /// there is no X server.
    using Continuation = std::function<void(quint32 time)>;

    /// Takes the X server's present time for that of the user, where there is an X server.
    void renew(Continuation goOn);

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    /// Never shown; its changes come back with the server's time.
    std::unique_ptr<QWindow> m_window;
    std::vector<Continuation> m_waiting;
};
