// SPDX-License-Identifier: MIT
#include "style/ElidedLabel.h"

#include "style/breakableText.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace
{

/// Qt shows a plain tool tip on one line, however long, and takes some texts for HTML.
QString wrappingToolTip(const QString &text)
{
    return u"<span style=\"white-space: pre-wrap\">%1</span>"_s.arg(
        breakableText(text).toHtmlEscaped());
}

} // namespace

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget *parent) : QLabel(parent), m_mode(mode)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

bool ElidedLabel::event(QEvent *event)
{
    const QString shown = toolTip().isEmpty() && isCut() ? text() : toolTip();
    if (event->type() != QEvent::ToolTip || shown.isEmpty())
        return QLabel::event(event);
    const QPoint position = static_cast<QHelpEvent *>(event)->globalPos();
    QToolTip::showText(position, wrappingToolTip(shown), this);
    return true;
}

bool ElidedLabel::isCut() const
{
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect area = contentsRect();
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(area, static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), m_mode, area.width()));
}
