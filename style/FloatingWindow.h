// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
#include <QPoint>
#include <QWidget>

#include <optional>

class QDialog;
class QScreen;

/// A window of the program in its light look. It stays above the windows of other programs.
/// Closing it, by its title bar or with Ctrl+W, only hides it and never ends the program; its
/// dialogs end with that.
///
/// It appears in the middle of the screen at first and later where it was, but always where all of
/// it can be reached: also when screens become smaller, go or come. Main thread.
class FloatingWindow : public QWidget
{
    Q_OBJECT
public:
    /// @param titleBarButtons those beside the one that closes
    FloatingWindow(const QString &title, Qt::WindowFlags titleBarButtons,
                   QWidget *parent = nullptr);

    /// Brings the window to the front with the keyboard, and the dialog that it has open before it.
    void present();

    void setVisible(bool visible) override;

protected:
    /// Takes a size that is no larger than `room`, in points and without the title bar.
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
    QMargins m_frame;                  ///< as wide as it was when it was last seen
    bool m_isReachDue = false;
};
