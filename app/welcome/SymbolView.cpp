// SPDX-License-Identifier: MIT
#include "app/welcome/SymbolView.h"

#include <QPainter>

SymbolView::SymbolView(const QIcon &icon, int side, const QString &description, QWidget *parent)
    : QLabel(parent), m_icon(icon)
{
    setFixedSize(side, side);
    // The label's own pixmap tells screen readers that this is a picture; what is painted is drawn
    // for the screen's scale.
    setPixmap(m_icon.pixmap(side, side));
    setAccessibleName(description);
}

void SymbolView::setOutset(int outset)
{
    m_outset = outset;
    update();
}

void SymbolView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_icon.paint(&painter, rect().adjusted(-m_outset, -m_outset, m_outset, m_outset));
}
