// SPDX-License-Identifier: MIT
#include "app/welcome/OptionPopUp.h"

#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QWheelEvent>

namespace
{

bool isReturn(const QEvent &event)
{
    const int key = static_cast<const QKeyEvent &>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

OptionPopUp::OptionPopUp(QWidget *parent) : QComboBox(parent)
{
    setFont(systemFont(12, QFont::Medium));
    setFocusPolicy(Qt::TabFocus);
    // The list is a window of its own, which does not inherit the palette.
    view()->setPalette(VelmoraPalette::lightPalette());
    view()->window()->setPalette(VelmoraPalette::lightPalette());
    view()->installEventFilter(this);
}

/// Qt closes an open list before it offers the key to the window's shortcuts, and leaves the key to
/// them: Return would pick an item and also press the window's default button.
bool OptionPopUp::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && isReturn(*event)) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress && isReturn(*event)) {
        pick(view()->currentIndex().row());
        return true;
    }
    return QComboBox::eventFilter(watched, event);
}

void OptionPopUp::pick(int index)
{
    hidePopup();
    if (index < 0)
        return;
    setCurrentIndex(index);
    Q_EMIT activated(index);
}

void OptionPopUp::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}
