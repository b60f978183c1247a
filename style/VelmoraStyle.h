// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

/// The look of the program's push buttons, pop-ups, check boxes and scroll bars, in the palette's
/// colours and the same on every desktop. Qt's "fusion" style draws the rest.
/// `applyLightAppearance()` makes it the style of the whole application.
class VelmoraStyle : public QProxyStyle
{
    Q_OBJECT
public:
    VelmoraStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                         SubControl subControl, const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override;

    /// An information alert shows the program's logo.
    QIcon standardIcon(StandardPixmap icon, const QStyleOption *option,
                       const QWidget *widget) const override;
};
