#include "app/welcome/columns.h"

#include <QGridLayout>

namespace
{

// In points.
constexpr int columnWidth = 180;
constexpr int columnSpacing = 12;
constexpr int rowSpacing = 8;

} // namespace

QGridLayout *makeColumns(QWidget *owner)
{
    auto *grid = new QGridLayout(owner);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(columnSpacing);
    grid->setVerticalSpacing(rowSpacing);
    for (int column = 0; column < columnCount; ++column) {
        grid->setColumnMinimumWidth(column, columnWidth);
        grid->setColumnStretch(column, 1);
    }
    return grid;
}
