// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QLabel>

/// A small rounded label on a tint of its colour.
class Pill : public QLabel
{
    Q_OBJECT
public:
    Pill(const QString &text, const QColor &color, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
};
