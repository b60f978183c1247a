// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QWidget>

/// A plain view filled with one colour, with optional rounded corners and border.
class PaletteView : public QWidget
{
    Q_OBJECT
public:
    /// Filled with the palette's `window` colour.
    explicit PaletteView(QWidget *parent = nullptr);

    QColor fillColor() const { return m_fillColor; }
    void setFillColor(const QColor &color);

    /// Radius in points.
    void setCornerRadius(double radius);
    /// A border inside the edge; width in points, 0 for none.
    void setBorder(double width, const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_fillColor;
    double m_cornerRadius = 0;
    double m_borderWidth = 0;
    QColor m_borderColor;
};
