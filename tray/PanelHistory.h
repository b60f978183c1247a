// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileTime.h"

#include <QList>
#include <QRect>

#include <optional>

/// Where the tray's panel stood on the desktop. All in device pixels, in the coordinates that the
/// screens share.
struct PanelPlace {
    QRect panel;
    /// The screen that the panel stood on.
    QRect screen;
    /// All screens together.
    QRect desktop;

    /// The part that the panel covers of a screenshot with this many pixels. A screenshot as large
    /// as the desktop shows all of it, one as large as the screen shows that screen. Empty for
    /// every other size: what such a picture shows is not known.
    QRect inPicture(QSize pixels) const;

    bool operator==(const PanelPlace &) const = default;
};

/// The places where the panel was visible during the last minute. A screenshot's file appears a
/// moment after its pixels were taken, so whoever wants to know what it shows has to ask for the
/// past. Not thread-safe.
class PanelHistory
{
public:
    /// From this moment on the panel is visible at this place.
    void shown(const PanelPlace &place, FileTime now);

    /// From this moment on the panel is not visible.
    void hidden(FileTime now);

    /// Every place where the panel was at some time between the two moments, the oldest first.
    QList<PanelPlace> between(FileTime from, FileTime to) const;

private:
    struct Stay {
        PanelPlace place;
        FileTime begin;
        /// Absent while the panel stands there.
        std::optional<FileTime> end;
    };

    void endStay(FileTime now);
    void forget(FileTime now);

    QList<Stay> m_stays;
};
