// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/ReservedEdges.h"
#include "platform/linux/x11/UnlistedBars.h"
#include "platform/linux/x11/X11Properties.h"

#include <QList>
#include <QObject>
#include <QRect>
#include <QSize>
#include <QTimer>

#include <optional>

class X11Connection;

/// The desktop's bars (panels, docks), which keep an edge of a screen for themselves. For what Qt
/// can't tell: most window managers report one work area for all screens, so that a bar between two
/// screens is not in it; some managers report none. Main thread.
class DesktopBars : public QObject
{
    Q_OBJECT
public:
    /// @param x11 reports the root window's properties, and must outlive this object
    explicit DesktopBars(X11Connection &x11);

    /// The part of this screen that no bar keeps for itself, in device pixels. Nothing if the
    /// desktop reports neither that nor any bar. Asks the server on each call, in a few round
    /// trips.
    std::optional<QRect> freePart(const QRect &screen) const;

    /// Whether a bar reserves part of this place, in device pixels, by the letter of its property.
    /// That counts from the edges of the whole desktop, so that a bar between two screens reserves
    /// one of them whole, and some window managers push windows off it. Asks the server on each
    /// call, in a few round trips.
    bool reserve(const QRect &place) const;

    /// Whether the window manager reports a work area. Asks the server on each call.
    bool areInWorkArea() const;

Q_SIGNALS:
    /// A bar may have come, changed or gone a moment ago. Emitted once for all that changes
    /// together, and only for new bars and those that were there at the last call of `freePart`.
    void changed();

private:
    struct Bar {
        quint32 window;
        ReservedEdges reserved;
        QRect place;
    };

    QList<quint32> candidates() const;
    QList<Bar> bars() const;
    QSize desktop() const;
    void watch(const QList<Bar> &bars) const;
    std::optional<QRect> reportedPart(const QRect &screen) const;
    bool isReported() const;
    void readEvent(const xcb_generic_event_t *event);
    bool tellsOfBars(const xcb_generic_event_t *event) const;
    void settle();

    X11Connection &m_x11;
    mutable X11Properties m_properties;
    mutable UnlistedBars m_unlisted;
    /// Windows that are bars, and the properties whose changes may be those of a bar.
    mutable QList<quint32> m_watched;
    mutable QList<quint32> m_telling;
    QTimer m_settled;
};
