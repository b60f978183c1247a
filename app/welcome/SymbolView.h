// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QLabel>

/// A symbol or picture in a square of its own, crisp on every screen. Screen readers see it only
/// with a description.
class SymbolView : public QLabel
{
    Q_OBJECT
public:
    /// `side` in points.
    SymbolView(const QIcon &icon, int side, const QString &description = {},
               QWidget *parent = nullptr);

    /// Lets the icon extend beyond the square by this many points: for one with a margin of its
    /// own.
    void setOutset(int outset);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_icon;
    int m_outset = 0;
};
