// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariantMap>

/// The desktop's permission for a program that the user has just launched to come to the front. A
/// value; main thread.
struct LaunchToken {
    QString activationToken; ///< on Wayland
    QString startupId;       ///< on X11

    /// The token that this process was launched with.
    static LaunchToken ofThisProcess();

    /// The token as `org.freedesktop.Application` passes it on.
    static LaunchToken fromPlatformData(const QVariantMap &data);
    QVariantMap platformData() const;

    /// Puts the token where Qt on Wayland finds it when the next window wants to come to the front.
    void adopt() const;

    bool operator==(const LaunchToken &) const = default;
};
