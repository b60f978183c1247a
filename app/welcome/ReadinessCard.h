// SPDX-License-Identifier: MIT
#pragma once

#include "style/PaletteView.h"

/// One fact that the user can see at a glance: a symbol in the colour of its state, a title and a
/// detail.
class ReadinessCard : public PaletteView
{
    Q_OBJECT
public:
    ReadinessCard(const QString &title, const QString &detail, const QString &symbol,
                  const QColor &color, QWidget *parent = nullptr);
};
