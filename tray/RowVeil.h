// SPDX-License-Identifier: MIT
#pragma once

#include "style/PaletteView.h"

/// Makes the row below it look translucent. A translucent row shows the tray's single colour.
/// Painting that colour over the row gives the same pixels, at a fraction of the cost of drawing
/// the row off-screen and blending it. Main thread.
class RowVeil : public PaletteView
{
    Q_OBJECT
public:
    explicit RowVeil(QWidget *row);

    /// The opacity of a row that has arrived, from 0 to 1.
    void setAlpha(double alpha);

    /// How far the row has faded in, from 0 to 1.
    void setArrival(double arrival);

private:
    void showThrough();

    double m_alpha = 1;
    double m_arrival = 1;
};
