// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QWindow>

#include <functional>
#include <memory>
#include <vector>

/// When the user was last active in this program, as Qt knows it from X11 events. Window managers
/// that prevent focus stealing hold back a window if the user has been elsewhere since; a program
/// that was just opened again has received no newer event yet. Main thread.
class UserTime : public QAbstractNativeEventFilter
{
public:
    UserTime();
    ~UserTime() override;
    Q_DISABLE_COPY_MOVE(UserTime)

    /// Called from the event loop with the X server's current time in milliseconds; 0 without an X
    /// server.
    using Continuation = std::function<void(quint32 time)>;

    /// Sets the user's time to the X server's current time, where there is an X server.
    void renew(Continuation goOn);

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    /// Never shown; changing it makes the server send its time.
    std::unique_ptr<QWindow> m_window;
    std::vector<Continuation> m_waiting;
};
