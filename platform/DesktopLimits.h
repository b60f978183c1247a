// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>

#include <memory>

/// Something that a desktop may not offer to programs.
enum class DesktopLimit {
    StatusItem,         ///< there is no status bar
    TrayPlace,          ///< windows can't choose their position
    ApplicationInFront, ///< the desktop does not report it, or not for every application
};

/// What is missing on the running desktop. Main thread.
class DesktopLimits : public QObject
{
    Q_OBJECT
public:
    /// The features known to be missing, in the order of the enumeration. Finding that out takes a
    /// moment after the start, many seconds for a status bar; nothing is reported as missing
    /// before.
    virtual QList<DesktopLimit> missing() const = 0;

Q_SIGNALS:
    /// missing() has changed.
    void changed();
};

std::unique_ptr<DesktopLimits> makeDesktopLimits();
