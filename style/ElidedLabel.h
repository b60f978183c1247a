// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

/// A label of plain text on one line, cut with an ellipsis where it does not fit. Never asks for
/// more room than its text needs. `text()` is always the full text. Its tool tip is shown
/// literally, on as many lines as it needs; without one, a cut text is shown in full.
class ElidedLabel : public QLabel
{
    Q_OBJECT
public:
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool isCut() const;

    Qt::TextElideMode m_mode;
};
