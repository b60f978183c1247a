// SPDX-License-Identifier: MIT
#include "style/FloatingWindow.h"

#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"
#include "style/accessibleRole.h"

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QShortcut>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace
{

// The height that a window manager's title bar and borders add, in points. It is known only once
// the window is on the screen, which is too late to choose the window's height.
constexpr int usualFrame = 30;
constexpr int largestFrame = 44;

constexpr Qt::WindowFlags commonFlags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                        Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                                        Qt::WindowStaysOnTopHint;

int area(const QRect &rect)
{
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

/// The screen that shows most of the frame; the main one when none shows any of it.
const QScreen *screenOf(const QRect &frame)
{
    const QScreen *best = QGuiApplication::primaryScreen();
    int shown = 0;
    const auto screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        const int here = area(screen->geometry().intersected(frame));
        if (here > shown) {
            best = screen;
            shown = here;
        }
    }
    return best;
}

int withinReach(int start, int length, int roomStart, int roomLength)
{
    return std::max(roomStart, std::min(start, roomStart + roomLength - length));
}

QPoint withinReach(const QRect &frame, const QRect &room)
{
    return {withinReach(frame.left(), frame.width(), room.left(), room.width()),
            withinReach(frame.top(), frame.height(), room.top(), room.height())};
}

} // namespace

FloatingWindow::FloatingWindow(const QString &title, Qt::WindowFlags titleBarButtons,
                               QWidget *parent)
    : QWidget(parent, commonFlags | titleBarButtons)
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(title);
    setPalette(VelmoraPalette::lightPalette());
    setFont(systemFont(13));
    setAccessibleRole(*this, QAccessible::Window);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);

    const auto screens = QGuiApplication::screens();
    for (const QScreen *screen : screens)
        watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](const QScreen *added) {
        watch(added);
        reachSoon();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &FloatingWindow::reachSoon);
}

void FloatingWindow::present()
{
    const bool wasVisible = isVisible();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    if (wasVisible)
        bringIntoReach();
    raise();
    activateWindow();
    // An open dialog is what the user has to answer first.
    const auto dialogs = openDialogs();
    for (QDialog *dialog : dialogs) {
        dialog->raise();
        dialog->activateWindow();
    }
}

void FloatingWindow::setVisible(bool visible)
{
    if (visible && !isVisible())
        place();
    // A hidden window has no frame any more, and `pos()` may date from before it had one.
    if (!visible && isVisible()) {
        m_lastPlace = windowHandle()->framePosition();
        m_frame = windowHandle()->frameMargins();
        endDialogs();
    }
    QWidget::setVisible(visible);
}

void FloatingWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::WindowStateChange)
        reachSoon();
    QWidget::changeEvent(event);
}

void FloatingWindow::watch(const QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, &FloatingWindow::reachSoon);
    connect(screen, &QScreen::availableGeometryChanged, this, &FloatingWindow::reachSoon);
}

/// Changes of several screens come together, and Qt moves windows in between.
void FloatingWindow::reachSoon()
{
    if (std::exchange(m_isReachDue, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isReachDue = false;
            bringIntoReach();
        },
        Qt::QueuedConnection);
}

void FloatingWindow::bringIntoReach()
{
    if (!isVisible() || isMinimized() || isMaximized())
        return;
    m_frame = windowHandle()->frameMargins();
    const QPoint corner = windowHandle()->framePosition();
    const QPoint wanted = placeInReach(corner);
    if (wanted != corner)
        windowHandle()->setFramePosition(wanted);
}

/// Where the frame's corner must be so that all of the window can be reached. Gives the window a
/// size for which that is possible.
QPoint FloatingWindow::placeInReach(QPoint corner)
{
    const QSize frame(m_frame.left() + m_frame.right(),
                      std::max(m_frame.top() + m_frame.bottom(), largestFrame));
    const QRect room = screenOf({corner, size() + frame})->availableGeometry();
    fitInto(room.size() - frame);
    return withinReach({corner, size().grownBy(m_frame)}, room);
}

/// In the middle of the screen at first, later where it was.
void FloatingWindow::place()
{
    // Only a position set before the native window exists is that of its frame, title bar included.
    if (testAttribute(Qt::WA_WState_Created))
        destroy();
    if (m_lastPlace) {
        move(placeInReach(*m_lastPlace));
        return;
    }
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    fitInto(room.size() - QSize(0, largestFrame));
    QRect framed({}, size() + QSize(0, usualFrame));
    framed.moveCenter(room.center());
    move(framed.topLeft());
}

QList<QDialog *> FloatingWindow::openDialogs() const
{
    auto dialogs = findChildren<QDialog *>(QString(), Qt::FindDirectChildrenOnly);
    dialogs.removeIf([](const QDialog *dialog) { return !dialog->isVisible(); });
    return dialogs;
}

void FloatingWindow::endDialogs()
{
    const auto dialogs = openDialogs();
    for (QDialog *dialog : dialogs) {
        dialog->hide();
        // Deleted later, because a signal of the dialog may be what hides the window.
        dialog->deleteLater();
    }
}
