// SPDX-License-Identifier: MIT
#include "app/welcome/ChecklistRow.h"

#include "app/welcome/SymbolView.h"
#include "app/welcome/labels.h"
#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QGridLayout>

using namespace Qt::StringLiterals;

namespace
{

constexpr int symbolSide = 16; // points

QIcon stateSymbol(bool isDone)
{
    return isDone ? symbolIcon(u"checkmark.circle.fill"_s, VelmoraPalette::teal())
                  : symbolIcon(u"circle"_s, VelmoraPalette::amber());
}

} // namespace

ChecklistRow::ChecklistRow(const QString &title, const QString &detail, bool isDone,
                           QWidget *parent)
    : QWidget(parent)
{
    const QString state = isDone ? u"Done"_s : u"To do"_s;
    setAccessibleName(title + u", "_s + state);

    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(1);
    grid->setColumnStretch(1, 1);
    grid->addWidget(new SymbolView(stateSymbol(isDone), symbolSide, state), 0, 0);
    const QColor titleColor =
        isDone ? VelmoraPalette::secondaryText() : VelmoraPalette::primaryText();
    grid->addWidget(truncatedLabel(title, systemFont(12, QFont::Medium), titleColor), 0, 1);
    if (detail.isEmpty())
        return;
    QLabel *detailLabel = truncatedLabel(detail, systemFont(11), VelmoraPalette::secondaryText());
    grid->addWidget(detailLabel, 1, 1);
}
