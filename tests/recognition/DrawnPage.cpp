// SPDX-License-Identifier: MIT
#include "tests/recognition/DrawnPage.h"

#include <QFontMetrics>
#include <QLinearGradient>

#include <random>

using namespace Qt::StringLiterals;

DrawnPage::DrawnPage(QSize size, QColor ground) : m_image(size, QImage::Format_RGB32)
{
    m_image.fill(ground);
    font(u"DejaVu Sans"_s, 16);
}

DrawnPage &DrawnPage::ink(QColor colour)
{
    m_ink = colour;
    return *this;
}

DrawnPage &DrawnPage::font(const QString &family, int pixels)
{
    m_font = QFont(family);
    m_font.setPixelSize(pixels);
    return *this;
}

QRect DrawnPage::text(QPoint base, const QString &text)
{
    QPainter painter(&m_image);
    painter.setFont(m_font);
    painter.setPen(m_ink);
    painter.drawText(base, text);
    return QFontMetrics(m_font).tightBoundingRect(text).translated(base);
}

void DrawnPage::box(const QRect &area)
{
    QPainter painter(&m_image);
    painter.setPen(m_ink);
    painter.drawRect(area);
}

void DrawnPage::texture(const QRect &area, unsigned seed)
{
    std::mt19937 random(seed);
    const auto upTo = [&](int limit) {
        return std::uniform_int_distribution<int>(0, limit - 1)(random);
    };
    QPainter painter(&m_image);
    painter.setClipRect(area);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (int spot = 0; spot < area.width() * area.height() / 60; ++spot) {
        const int size = 2 + upTo(24);
        painter.setBrush(QColor(upTo(256), upTo(256), upTo(256), 90));
        painter.drawEllipse(area.left() + upTo(area.width()), area.top() + upTo(area.height()),
                            size, 2 + upTo(size));
    }
}

void DrawnPage::icon(const QRect &area, int degrees)
{
    QPainter painter(&m_image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_ink, 2));
    painter.translate(area.center());
    painter.rotate(degrees);
    const int half = area.width() / 2;
    painter.drawEllipse(QPoint(0, 0), half / 2, half / 2);
    painter.drawLine(-half, 0, half, 0);
    painter.drawLine(half / 2, half / 2, half, half);
}
