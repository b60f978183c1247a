// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>

#include <memory>

/// What a desktop may not offer to programs.
enum class DesktopLimit {
    StatusItem,         ///< there is no status bar
    TrayPlace,          ///< windows can't choose where they stand
    ApplicationInFront, ///< it is not told, or not of every application
};

/// What is missing on the running desktop. Main thread.
class DesktopLimits : public QObject
{
    Q_OBJECT
public:
    /// What is known to be missing, in the order of the enumeration. Finding that out takes a
    /// moment after the start, for a status bar many seconds; nothing is said to be missing before.
    virtual QList<DesktopLimit> missing() const = 0;

Q_SIGNALS:
    /// missing() is another one.
    void changed();
};

std::unique_ptr<DesktopLimits> makeDesktopLimits();
