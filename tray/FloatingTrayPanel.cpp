// SPDX-License-Identifier: MIT
#include "tray/FloatingTrayPanel.h"

#include "platform/PanelWindow.h"
#include "style/PaletteView.h"
#include "style/VelmoraPalette.h"
#include "style/accessibleRole.h"
#include "tray/trayFrame.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{

constexpr double cornerRadius = 14;
constexpr int borderWidth = 1;
constexpr double borderAlpha = 0.18;

/// Without a shadow, only the border separates the panel from what is behind it.
constexpr double borderAlphaWithoutShadow = 0.6;

/// Qt keeps each screen's corner at its system coordinates and scales only distances from there.
QRect devicePixels(const QRect &points, const QScreen &screen)
{
    const QPoint corner = screen.geometry().topLeft();
    const double ratio = screen.devicePixelRatio();
    return {corner + (points.topLeft() - corner) * ratio, points.size() * ratio};
}

PanelPlace placeOf(const QRect &panel, const QScreen &screen)
{
    PanelPlace place = {devicePixels(panel, screen), devicePixels(screen.geometry(), screen), {}};
    const QList<QScreen *> all = QGuiApplication::screens();
    for (const QScreen *each : all)
        place.desktop |= devicePixels(each->geometry(), *each);
    return place;
}

} // namespace

FloatingTrayPanel::FloatingTrayPanel(PanelWindow &panelWindow)
    : QWidget(nullptr,
              panelWindow.windowType() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_panelWindow(panelWindow)
    , m_background(new PaletteView(this))
{
    setWindowTitle(u"Velmora"_s);
    setAccessibleRole(*this, QAccessible::Window);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setPalette(VelmoraPalette::lightPalette());

    // Otherwise Qt gives keyboard focus to the first name when the window becomes active, for
    // example after a click on a button.
    setFocusPolicy(Qt::ClickFocus);
    setFocus();

    // The height is not fixed: window managers apply a new fixed height before the new position,
    // which would make the panel jump.
    setFixedWidth(TrayMeasures::width);

    m_background->setFillColor(VelmoraPalette::tray());
    m_background->setCornerRadius(cornerRadius);
    connect(&m_panelWindow, &PanelWindow::transparencyChanged, this,
            &FloatingTrayPanel::updateEdge);
    connect(&m_panelWindow, &PanelWindow::removed, this, &FloatingTrayPanel::replaceRemoved);
    updateEdge();
}

void FloatingTrayPanel::setContent(QWidget *content)
{
    m_content = content;
    content->setParent(m_background);
    content->setGeometry(rect());
}

void FloatingTrayPanel::place(const QRect &frame)
{
    m_panelWindow.setFrame(frame);
    setGeometry(frame);
}

void FloatingTrayPanel::present()
{
    if (isVisible() && m_panelWindow.bringToFront(*windowHandle()))
        return;
    hide();
    destroy();
    // Otherwise the new window would be minimised like the old one.
    setWindowState(Qt::WindowNoState);
    createWinId();
    m_panelWindow.prepare(*windowHandle(), cornerRadius);
    show();
    m_panelWindow.bringToFront(*windowHandle());
}

void FloatingTrayPanel::dismiss()
{
    if (isVisible())
        m_panelWindow.giveFocusBack(*windowHandle());
    hide();
}

void FloatingTrayPanel::takeFocus()
{
    m_panelWindow.takeFocus(*windowHandle());
}

void FloatingTrayPanel::giveFocusBack()
{
    if (isVisible())
        m_panelWindow.giveFocusBackAndStay(*windowHandle());
}

void FloatingTrayPanel::replaceRemoved()
{
    if (isVisible())
        present();
}

void FloatingTrayPanel::moveEvent(QMoveEvent *)
{
    notePlace();
}

void FloatingTrayPanel::resizeEvent(QResizeEvent *)
{
    m_background->setGeometry(rect());
    if (m_content)
        m_content->setGeometry(rect());
    notePlace();
}

void FloatingTrayPanel::showEvent(QShowEvent *)
{
    notePlace();
}

void FloatingTrayPanel::hideEvent(QHideEvent *)
{
    notePlace();
}

void FloatingTrayPanel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::WindowStateChange)
        notePlace();
    QWidget::changeEvent(event);
}

void FloatingTrayPanel::notePlace()
{
    if (isVisible() && !isMinimized())
        m_history.shown(placeOf(m_panelWindow.frame(*windowHandle()), *screen()), FileTimes::now());
    else
        m_history.hidden(FileTimes::now());
}

/// Without transparency, the pixels on the curves of the corners are not blended with what is
/// behind the panel. They get the border's colour, and the pixels outside are cut off the window.
void FloatingTrayPanel::paintEvent(QPaintEvent *)
{
    if (m_isBlended)
        return;
    QPainter painter(this);
    painter.fillRect(rect(), VelmoraPalette::tray());
    painter.fillRect(rect(), borderColor());
}

QColor FloatingTrayPanel::borderColor() const
{
    return VelmoraPalette::withAlpha(VelmoraPalette::coral(),
                                     m_isBlended ? borderAlpha : borderAlphaWithoutShadow);
}

void FloatingTrayPanel::updateEdge()
{
    m_isBlended = m_panelWindow.showsTransparency();
    m_background->setBorder(borderWidth, borderColor());
    update();
}
