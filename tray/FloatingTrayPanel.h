#pragma once

#include "tray/PanelHistory.h"

#include <QWidget>

class PaletteView;
class PanelWindow;

/// The frameless window that holds the tray's rows. It floats above other windows, is shown
/// without taking the keyboard, and takes it when the user clicks into a name. Always drawn light.
/// Main thread; the service outlives it.
class FloatingTrayPanel : public QWidget
{
    Q_OBJECT
public:
    explicit FloatingTrayPanel(PanelWindow &panelWindow);

    /// Fills the panel; the panel takes ownership.
    void setContent(QWidget *content);

    /// Moves and sizes the panel, and follows a compositor that has come or gone.
    void setFrame(const QRect &frame);

    /// Shows the panel in front of the others and leaves the keyboard where it is.
    void present();

    /// Takes the keyboard from whatever program has it.
    void takeFocus();

    /// Where it was visible during the last minute.
    const PanelHistory &history() const { return m_history; }

protected:
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void updateCorners();
    void notePlace();

    PanelWindow &m_panelWindow;
    PaletteView *m_background;
    QWidget *m_content = nullptr;
    bool m_roundsByMask = false;
    PanelHistory m_history;
};
