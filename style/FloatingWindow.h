// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
#include <QPoint>
#include <QWidget>

#include <optional>

class QDialog;
class QScreen;

/// A window of the program in its light look. It stays above the windows of other programs. Closing
/// it, by its title bar or with Ctrl+W, only hides it and ends its dialogs, never the program.
///
/// It first appears in the middle of the screen, later where it was, but always where all of it can
/// be reached, even when screens shrink, disappear or are added. Main thread.
class FloatingWindow : public QWidget
{
    Q_OBJECT
public:
    /// @param titleBarButtons those besides the close button
    FloatingWindow(const QString &title, Qt::WindowFlags titleBarButtons,
                   QWidget *parent = nullptr);

    /// Brings the window to the front with the keyboard focus, and its open dialog in front of it.
    void present();

    void setVisible(bool visible) override;

protected:
    /// Chooses a size no larger than `room`, in points and without the title bar.
    virtual void fitInto(const QSize &room) = 0;

    void changeEvent(QEvent *event) override;

private:
    void watch(const QScreen *screen);
    void reachSoon();
    void bringIntoReach();
    QPoint placeInReach(QPoint corner);
    void place();
    QList<QDialog *> openDialogs() const;
    void endDialogs();

    std::optional<QPoint> m_lastPlace; ///< of the frame's corner
    QMargins m_frame;                  ///< as wide as when it was last visible
    bool m_isReachDue = false;
};
