// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

/// The pop-ups for the user's three options; they show the stored values.
class BehaviorSection : public QWidget
{
    Q_OBJECT
public:
    explicit BehaviorSection(QWidget *parent = nullptr);

Q_SIGNALS:
    /// Indices in `optionCases()`.
    void copyBehaviorPicked(int index);
    void trayDurationPicked(int index);
    void trayPositionPicked(int index);
};
