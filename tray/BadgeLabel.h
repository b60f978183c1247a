// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QLabel>

/// A word centred in a small rounded box. A word that is too wide for the box is condensed.
class BadgeLabel : public QLabel
{
    Q_OBJECT
public:
    explicit BadgeLabel(QWidget *parent = nullptr);

    void setColors(const QColor &text, const QColor &background);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_textColor;
    QColor m_backgroundColor;
};
