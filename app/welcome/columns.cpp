// SPDX-License-Identifier: MIT
#include "app/welcome/columns.h"

#include <QGridLayout>

QGridLayout *makeColumns(QWidget *owner)
{
    auto *grid = new QGridLayout(owner);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(columnSpacing);
    for (int column = 0; column < columnCount; ++column) {
        grid->setColumnMinimumWidth(column, columnWidth);
        grid->setColumnStretch(column, 1);
    }
    return grid;
}
