// SPDX-License-Identifier: MIT
#pragma once

#include "style/ElidedLabel.h"

/// A row's short status text; empty when idle. Main thread.
class StatusLabel : public ElidedLabel
{
    Q_OBJECT
public:
    explicit StatusLabel(QWidget *parent = nullptr);

    /// Shows a text for two seconds. A text set in the meantime stays for its own time; one set
    /// with `setText()` stays.
    void showBriefly(const QString &text);
};
