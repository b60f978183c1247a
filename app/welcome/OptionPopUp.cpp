#include "app/welcome/OptionPopUp.h"

#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QAbstractItemView>
#include <QWheelEvent>

OptionPopUp::OptionPopUp(QWidget *parent) : QComboBox(parent)
{
    setFont(systemFont(12, QFont::Medium));
    setFocusPolicy(Qt::TabFocus);
    // The list is a window of its own, to which the palette does not come down.
    view()->setPalette(VelmoraPalette::lightPalette());
    view()->window()->setPalette(VelmoraPalette::lightPalette());
}

void OptionPopUp::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}
