// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMargins>
#include <QRect>
#include <QSize>

/// What a bar keeps of the desktop's edges for itself, as its window's property says.
class ReservedEdges
{
public:
    /// How many numbers the property has at most.
    static constexpr int most = 12;

    /// No screen is larger than the server's coordinates, which have 16 bits.
    static constexpr quint32 largestNumber = 32'767;

    ReservedEdges() = default;

    /// @param property for the left, right, top and bottom edge of the whole desktop, how deep the
    ///        reserved strip is; newer programs add, in the same order, the first and the last
    ///        pixel along each edge. With fewer numbers nothing is reserved.
    explicit ReservedEdges(const QList<quint32> &property);

    bool isEmpty() const;

    /// What is taken of a screen's edges. Counts only as far as the bar itself stands on the
    /// screen.
    /// @param bar its window
    QMargins takenFrom(const QRect &screen, const QRect &bar, const QSize &desktop) const;

    /// Whether the strips, read by the letter, cover a part of this place. Between two screens, a
    /// bar's strip covers one of them whole.
    bool cover(const QRect &place, const QSize &desktop) const;

private:
    QList<int> m_property;
};
