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
    /// Whether it sees every window on the desktop. If not, and no window that it sees has the
    /// focus, another application may well be in front.
    virtual bool seesAllWindows() const = 0;

    /// Processes the changes up to now, as far as they can be had within some milliseconds.
    virtual void update() = 0;

Q_SIGNALS:
    /// This window has the focus, or no window that can be seen has it. Changes may be skipped when
    /// they come faster than they can be examined; the last one never is.
    void focusChanged(const std::optional<FocusedWindow> &window);
};
