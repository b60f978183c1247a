// SPDX-License-Identifier: MIT
#include "tray/RowStack.h"

#include "tray/trayFrame.h"

void RowStack::insertAtTop(QWidget *row)
{
    row->setParent(this);
    // Screen readers read rows in the order of the children.
    row->lower();
    m_rows.prepend(row);
    for (int i = 1; i < m_rows.size(); ++i)
        QWidget::setTabOrder(m_rows[i - 1], m_rows[i]);
    arrange();
    row->show();
}

void RowStack::remove(QWidget *row)
{
    m_rows.removeOne(row);
    m_offsets.remove(row);
    // If it were hidden with keyboard focus, Qt would move the focus to a control of another row.
    if (row->isAncestorOf(window()->focusWidget()))
        window()->setFocus();
    row->hide();
    row->deleteLater();
    arrange();
}

void RowStack::setOffset(QWidget *row, double offset)
{
    m_offsets[row] = qRound(offset);
    arrange();
}

void RowStack::resizeEvent(QResizeEvent *)
{
    arrange();
}

void RowStack::arrange()
{
    using namespace TrayMeasures;
    int y = inset;
    for (QWidget *row : std::as_const(m_rows)) {
        row->setGeometry(inset + m_offsets.value(row), y, QWidget::width() - 2 * inset, rowHeight);
        y += rowHeight + rowSpacing;
    }
}
