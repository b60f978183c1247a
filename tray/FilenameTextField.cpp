// SPDX-License-Identifier: MIT
#include "tray/FilenameTextField.h"

#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"
#include "style/breakableText.h"

#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFrame>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace
{

constexpr int fontSize = 14;
constexpr double backgroundAlpha = 0.1;
constexpr double cornerRadius = 5;
constexpr int sidePadding = 4;

bool isEditingKey(const QKeyEvent &event)
{
    if (event.modifiers() != Qt::ControlModifier && event.modifiers() != Qt::MetaModifier)
        return false;
    const int key = event.key();
    return key == Qt::Key_A || key == Qt::Key_C || key == Qt::Key_V || key == Qt::Key_X;
}

} // namespace

FilenameTextField::FilenameTextField(const QString &name, QWidget *parent) : QLineEdit(name, parent)
{
    setFont(systemFont(fontSize, QFont::DemiBold));
    setFrame(false);
    setTextMargins(sidePadding, 0, sidePadding, 0);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, VelmoraPalette::primaryText());
    setPalette(colors);
    connect(this, &QLineEdit::textEdited, this, &FilenameTextField::edited);
}

bool FilenameTextField::event(QEvent *event)
{
    // Otherwise a shortcut elsewhere in the program could consume the key.
    if (event->type() == QEvent::ShortcutOverride &&
        isEditingKey(*static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::ToolTip && isCut()) {
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), wholeNameToolTip(), this);
        return true;
    }
    return QLineEdit::event(event);
}

/// The name may be too long for one line, and must not be taken for HTML.
QString FilenameTextField::wholeNameToolTip() const
{
    return u"<p style=\"white-space: pre-wrap\"><b>%1</b></p><p>%2</p>"_s.arg(
        breakableText(text()).toHtmlEscaped(), toolTip().toHtmlEscaped());
}

void FilenameTextField::keyPressEvent(QKeyEvent *event)
{
    if (!performEditingKey(*event))
        QLineEdit::keyPressEvent(event);
}

bool FilenameTextField::performEditingKey(const QKeyEvent &event)
{
    if (!hasFocus() || !isEditingKey(event))
        return false;
    switch (event.key()) {
    case Qt::Key_A:
        selectAll();
        return true;
    case Qt::Key_C:
        copy();
        return true;
    case Qt::Key_V:
        paste();
        return true;
    default:
        cut();
        return true;
    }
}

void FilenameTextField::inputMethodEvent(QInputMethodEvent *event)
{
    if (!event->preeditString().isEmpty())
        Q_EMIT edited();
    QLineEdit::inputMethodEvent(event);
}

void FilenameTextField::mousePressEvent(QMouseEvent *event)
{
    Q_EMIT pressed();
    QLineEdit::mousePressEvent(event);
}

void FilenameTextField::paintEvent(QPaintEvent *event)
{
    paintBackground();
    if (hasFocus())
        QLineEdit::paintEvent(event);
    else
        paintElided();
}

void FilenameTextField::paintBackground()
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(VelmoraPalette::withAlpha(VelmoraPalette::amber(), backgroundAlpha));
    painter.drawRoundedRect(QRectF(rect()), cornerRadius, cornerRadius);
}

/// Where QLineEdit draws the text, so that nothing jumps when editing begins.
QRect FilenameTextField::textArea() const
{
    constexpr int lineEditMargin = 2;
    QStyleOptionFrame option;
    initStyleOption(&option);
    return style()
        ->subElementRect(QStyle::SE_LineEditContents, &option, this)
        .marginsRemoved(textMargins())
        .adjusted(lineEditMargin, 0, -lineEditMargin, 0);
}

bool FilenameTextField::isCut() const
{
    return !hasFocus() && fontMetrics().horizontalAdvance(text()) > textArea().width();
}

void FilenameTextField::paintElided()
{
    const QRect area = textArea();
    const QFontMetrics metrics = fontMetrics();
    const int top = area.y() + (area.height() - metrics.height() + 1) / 2;
    const QString elided = metrics.elidedText(text(), Qt::ElideMiddle, area.width());
    const bool fromTheRight = text().isRightToLeft();
    // There, QLineEdit leaves room for the cursor behind the last letter.
    constexpr int cursorRoom = 2;
    const int right = area.right() + 1 - cursorRoom - metrics.horizontalAdvance(elided);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    painter.setLayoutDirection(fromTheRight ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(fromTheRight ? right : area.x(), top + metrics.ascent(), elided);
}
