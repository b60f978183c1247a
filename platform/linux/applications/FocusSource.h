// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/applications/FocusedWindow.h"

#include <QObject>

#include <optional>

/// A way to learn which window has the focus. Main thread.
class FocusSource : public QObject
{
    Q_OBJECT
public:
    /// Whether it knows of every window on the desktop. Where it does not, that it sees none with
    /// the focus may well mean that another application is in front.
    virtual bool seesAllWindows() const = 0;

    /// Takes in what has changed up to now, as far as that is to be had within some milliseconds.
    virtual void update() = 0;

Q_SIGNALS:
    /// This window has the focus, or none that can be seen has it. Changes may be left out when
    /// they come faster than they can be looked at; the last one never is.
    void focusChanged(const std::optional<FocusedWindow> &window);
};
