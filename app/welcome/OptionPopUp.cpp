#include "app/welcome/OptionPopUp.h"

#include "style/SystemFont.h"

#include <QWheelEvent>

OptionPopUp::OptionPopUp(QWidget *parent) : QComboBox(parent)
{
    setFont(systemFont(12, QFont::Medium));
    setFocusPolicy(Qt::TabFocus);
}

void OptionPopUp::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}
