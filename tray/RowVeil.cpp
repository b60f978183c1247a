// SPDX-License-Identifier: MIT
#include "tray/RowVeil.h"

#include "style/VelmoraPalette.h"

RowVeil::RowVeil(QWidget *row) : PaletteView(row)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void RowVeil::setAlpha(double alpha)
{
    m_alpha = alpha;
    showThrough();
}

void RowVeil::setArrival(double arrival)
{
    m_arrival = arrival;
    showThrough();
}

void RowVeil::showThrough()
{
    const double alpha = m_alpha * m_arrival;
    setFillColor(VelmoraPalette::withAlpha(VelmoraPalette::tray(), 1 - alpha));
    setVisible(alpha < 1);
}
