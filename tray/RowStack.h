// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QWidget>

/// The tray's rows, one below the other, each as wide as the stack allows. Main thread.
class RowStack : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    /// Takes ownership. The row also becomes the first in tab order.
    void insertAtTop(QWidget *row);

    /// Hides the row and deletes it when control returns to the event loop.
    void remove(QWidget *row);

    /// Shifts a row to the right, in points, for as long as it stays in the stack.
    void setOffset(QWidget *row, double offset);

    const QList<QWidget *> &rows() const { return m_rows; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    QList<QWidget *> m_rows;
    QHash<QWidget *, int> m_offsets;
};
