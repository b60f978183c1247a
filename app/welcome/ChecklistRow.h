// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

/// One line of the setup checklist. Open items stand out, finished ones recede.
class ChecklistRow : public QWidget
{
    Q_OBJECT
public:
    /// An empty detail takes no space.
    ChecklistRow(const QString &title, const QString &detail, bool isDone,
                 QWidget *parent = nullptr);
};
