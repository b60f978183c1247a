#include "style/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace
{

/// Qt shows a plain tool tip on one line, however long, and takes some texts for HTML.
QString wrappingToolTip(const QString &text)
{
    return QStringLiteral("<span style=\"white-space: pre-wrap\">%1</span>")
        .arg(text.toHtmlEscaped());
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
    if (event->type() != QEvent::ToolTip || toolTip().isEmpty())
        return QLabel::event(event);
    const QPoint position = static_cast<QHelpEvent *>(event)->globalPos();
    QToolTip::showText(position, wrappingToolTip(toolTip()), this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect area = contentsRect();
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(area, static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), m_mode, area.width()));
}
