// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>

/// How a row looks: as the newest one, which is highlighted, or as an older one.
struct RowStyle {
    QString freshness;
    QColor freshnessText;
    QColor freshnessBackground;
    QColor accent;
    QColor background;
    int borderWidth = 0;
    QColor border;
    /// The opacity of the whole row.
    double alpha = 1;
};

RowStyle rowStyle(bool isNewest);
