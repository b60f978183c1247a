// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileTime.h"

#include <QList>
#include <QRect>

#include <optional>

/// Where the tray's panel was on the desktop. All values are device pixels, in the coordinates
/// common to all screens.
struct PanelPlace {
    QRect panel;
    /// The screen that the panel was on.
    QRect screen;
    /// All screens together.
    QRect desktop;

    /// The part that the panel covers of a screenshot of this size in pixels. A screenshot as large
    /// as the desktop shows all of it, and one as large as the screen shows that screen. Empty for
    /// any other size, because it is unknown what such a picture shows.
    QRect inPicture(QSize pixels) const;

    bool operator==(const PanelPlace &) const = default;
};

/// Where the panel was visible during the last minute. A screenshot's file appears a moment after
/// its pixels were captured, so what it shows depends on the past. Not thread-safe.
class PanelHistory
{
public:
    /// The panel is visible at this place from now on.
    void shown(const PanelPlace &place, FileTime now);

    /// The panel is no longer visible.
    void hidden(FileTime now);

    /// Every place where the panel was between the two times, oldest first.
    QList<PanelPlace> between(FileTime from, FileTime to) const;

private:
    struct Stay {
        PanelPlace place;
        FileTime begin;
        /// Nothing while the panel is still there.
        std::optional<FileTime> end;
    };

    void endStay(FileTime now);
    void forget(FileTime now);

    QList<Stay> m_stays;
};
