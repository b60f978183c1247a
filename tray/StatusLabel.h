// SPDX-License-Identifier: MIT
#pragma once

#include "style/ElidedLabel.h"

/// A row's short status text; empty when idle. Main thread.
class StatusLabel : public ElidedLabel
{
    Q_OBJECT
public:
    explicit StatusLabel(QWidget *parent = nullptr);

    /// Shows a text for two seconds. A text set meanwhile keeps its own time; `setText()` has none.
    void showBriefly(const QString &text);
};
