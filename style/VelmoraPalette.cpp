// SPDX-License-Identifier: MIT
#include "style/VelmoraPalette.h"

QColor VelmoraPalette::coral()
{
    return QColor::fromRgbF(0.07F, 0.52F, 0.95F);
}

QColor VelmoraPalette::teal()
{
    return QColor::fromRgbF(0.0F, 0.7F, 0.62F);
}

QColor VelmoraPalette::amber()
{
    return QColor::fromRgbF(0.98F, 0.82F, 0.26F);
}

QColor VelmoraPalette::blue()
{
    return QColor::fromRgbF(0.28F, 0.67F, 1.0F);
}

QColor VelmoraPalette::window()
{
    return QColor::fromRgbF(0.96F, 0.99F, 1.0F);
}

QColor VelmoraPalette::tray()
{
    return QColor::fromRgbF(0.91F, 0.97F, 1.0F);
}

QColor VelmoraPalette::card()
{
    return QColor::fromRgbF(1.0F, 1.0F, 1.0F);
}

QColor VelmoraPalette::cardMuted()
{
    return QColor::fromRgbF(0.93F, 0.99F, 0.97F);
}

QColor VelmoraPalette::primaryText()
{
    return QColor::fromRgbF(0.06F, 0.13F, 0.22F);
}

QColor VelmoraPalette::secondaryText()
{
    return QColor::fromRgbF(0.29F, 0.38F, 0.49F);
}

QColor VelmoraPalette::tertiaryText()
{
    return QColor::fromRgbF(0.48F, 0.56F, 0.64F);
}

QColor VelmoraPalette::withAlpha(QColor color, double alpha)
{
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

QPalette VelmoraPalette::lightPalette()
{
    QPalette palette(card(), window());
    palette.setColor(QPalette::Window, window());
    palette.setColor(QPalette::WindowText, primaryText());
    palette.setColor(QPalette::Base, card());
    palette.setColor(QPalette::AlternateBase, cardMuted());
    palette.setColor(QPalette::Text, primaryText());
    palette.setColor(QPalette::PlaceholderText, tertiaryText());
    palette.setColor(QPalette::Button, card());
    palette.setColor(QPalette::ButtonText, primaryText());
    palette.setColor(QPalette::BrightText, card());
    palette.setColor(QPalette::ToolTipBase, card());
    palette.setColor(QPalette::ToolTipText, primaryText());
    palette.setColor(QPalette::Highlight, coral());
    palette.setColor(QPalette::HighlightedText, card());
    palette.setColor(QPalette::Link, coral());
    palette.setColor(QPalette::LinkVisited, coral());
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, tertiaryText());
    palette.setColor(QPalette::Disabled, QPalette::Highlight, tertiaryText());
    return palette;
}
